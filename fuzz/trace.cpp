// Display helpers on plain arrays, and the floating-point unit's modes.
#include <algorithm>
#include <iterator>

#include "fuzz/block.h"
#include "fuzz/target.h"

namespace fuzz {
namespace {

// Points to read, points to write, and a range: mostly within them, sometimes an empty one that lies anywhere.
struct trace_arrays {
  explicit trace_arrays(play *p, int32_t in_parts = 1, int32_t out_parts = 1)
      : n(p->in->length()), in(static_cast<std::size_t>(n * in_parts)), out(static_cast<std::size_t>(n * out_parts)) {
    p->in->fill(in.data(), n * in_parts);
    p->in->fill(out.data(), n * out_parts);
    const bool is_within = p->in->byte() < 224;
    const int32_t a = is_within ? p->in->below(n + 1) : p->integer();
    const int32_t b = is_within ? p->in->below(n + 1) : p->integer();
    start = is_within ? std::min(a, b) : std::max(a, b);
    stop = is_within ? std::max(a, b) : std::min(a, b);
    count = is_within ? n : std::min(stop, 0);
  }

  const dsp_complex *complex_in() { return reinterpret_cast<const dsp_complex *>(in.data()); }
  dsp_complex *complex_out() { return reinterpret_cast<dsp_complex *>(out.data()); }

  int32_t finish(play *p) {
    p->check(in.is_intact() && out.is_intact(), "writes beside its arrays");
    p->note(in.data(), in.size());
    p->note(out.data(), out.size());
    return 0;
  }

  int32_t finish_index(play *p, int32_t index, int32_t least) {
    p->check(stop <= start || (index >= least && index < stop) || index == start, "gives a place outside the range");
    p->note(index);
    return finish(p);
  }

  int32_t n, start, stop, count;
  block<double> in, out;
};

int32_t scale_reals(play *p) {
  trace_arrays t(p);
  (p->in->byte() % 2 != 0 ? vfpdbMul1 : vfpdbMul2)(p->number(), t.out.data(), t.count);
  return t.finish(p);
}

int32_t scale_floats(play *p) {
  const int32_t n = p->in->length();
  block<float> data(static_cast<std::size_t>(n));
  for (int32_t i = 0; i < n; ++i) data.data()[i] = static_cast<float>(i % 7 - 3);
  if (n > 0) data.data()[n / 2] = p->in->single();
  const int32_t count = p->in->byte() < 224 ? n : std::min(p->integer(), 0);
  vfpsbMul2(p->in->single(), data.data(), count);
  p->check(data.is_intact(), "writes beside its array");
  for (int32_t i = 0; i < n; ++i) p->note(data.data()[i]);
  return 0;
}

int32_t scale_to_int(play *p) {
  trace_arrays t(p);
  block<int32_t> pixels(static_cast<std::size_t>(t.n));
  const auto routine = p->in->byte() % 2 != 0 ? vfpdb_ScaleToInt : vfpdb_ScaleToInt2;
  const double lo = p->number(), hi = p->number();
  const int32_t out_lo = p->integer(), out_hi = p->integer();
  routine(t.in.data(), t.count, lo, hi, pixels.data(), out_lo, out_hi);
  p->check(pixels.is_intact(), "writes beside its array");
  for (int32_t i = 0; i < t.count; ++i) p->note(pixels.data()[i]);
  return t.finish(p);
}

int32_t scale_to_fp(play *p) {
  trace_arrays t(p);
  const double lo = p->number(), hi = p->number();
  const double out_lo = p->number(), out_hi = p->number();
  vfpdb_ScaleToFP((p->in->byte() % 2 != 0 ? t.in : t.out).data(), t.count, lo, hi, t.out.data(), out_lo, out_hi);
  return t.finish(p);
}

int32_t find(play *p) {
  trace_arrays t(p);
  const bool greatest = p->in->byte() % 2 != 0;
  return t.finish_index(p, (greatest ? vfpd_FindMax : vfpd_FindMin)(t.in.data(), t.start, t.stop), t.start);
}

int32_t find_outside(play *p) {
  trace_arrays t(p);
  const bool greatest = p->in->byte() % 2 != 0;
  const int32_t lo = p->integer(), hi = p->integer();
  const int32_t index = (greatest ? vfpd_FindMax2 : vfpd_FindMin2)(t.in.data(), t.start, t.stop, lo, hi);
  p->check(index < 0 || t.stop <= t.start || index == t.start || index < lo || index >= hi,
           "gives a place in the band");
  return t.finish_index(p, index, -1);
}

int32_t expand(play *p) {
  trace_arrays t(p);
  const double first = p->number(), last = p->number();
  (p->in->byte() % 2 != 0 ? vfpd_ExpandLinear : vfpd_ExpandLog)(t.out.data(), t.count, first, last);
  return t.finish(p);
}

// A range that ends beyond the trace and a negative count are harmless here.
int32_t smooth(play *p) {
  const bool is_complex = p->in->byte() % 2 != 0;
  trace_arrays t(p, is_complex ? 2 : 1, is_complex ? 2 : 1);
  const bool is_hostile = p->in->byte() >= 192;
  const int32_t start = is_hostile ? p->integer() : t.start;
  const int32_t stop = is_hostile ? p->integer() : t.stop;
  const int32_t width = p->integer();
  const int32_t done = is_complex
                           ? vfpd_SmoothCpx(t.complex_in(), t.complex_out(), t.count, start, stop, width)
                           : vfpd_Smooth(t.in.data(), t.out.data(), t.count, start, stop, width, p->in->byte() % 2);
  p->check(done >= -1 && done <= std::max(t.n, 0), "gives an impossible count");
  p->note(done);
  return t.finish(p);
}

int32_t format(play *p) {
  trace_arrays t(p, 2);
  vfpd_FormatBuffer(static_cast<uint32_t>(p->integer()), t.complex_in(), t.out.data(), t.start, t.stop);
  return t.finish(p);
}

int32_t unwrap(play *p) {
  trace_arrays t(p, 2);
  vfpd_UnwrapPhase(t.complex_in(), t.start, t.stop, t.out.data());
  return t.finish(p);
}

int32_t modes(play *p) {
  const uint32_t before = get_fpscr();
  const uint32_t wanted = static_cast<uint32_t>(p->integer()) & 0x03c00000u;
  const uint32_t old = set_fpscr(wanted);
  const uint32_t fast = set_runfast(p->integer());
  const uint32_t after = get_fpscr();
  set_fpscr(before);
  p->check(old == before && fast == after && get_fpscr() == before, "does not give back the modes");
  return 0;
}

constexpr row rows[] = {
    {"vfpdbMul", scale_reals, 0},
    {"vfpsbMul2", scale_floats, 0},
    {"vfpdb_ScaleToInt", scale_to_int, 0},
    {"vfpdb_ScaleToFP", scale_to_fp, 0},
    {"vfpd_FindMax, vfpd_FindMin", find, 0},
    {"vfpd_FindMax2, vfpd_FindMin2", find_outside, 0},
    {"vfpd_ExpandLinear, vfpd_ExpandLog", expand, 0},
    {"vfpd_Smooth", smooth, 0},
    {"vfpd_FormatBuffer", format, 0},
    {"vfpd_UnwrapPhase", unwrap, 0},
    {"set_fpscr, set_runfast", modes, 0},
};

}  // namespace

const target trace = {"trace", rows, std::size(rows)};

}  // namespace fuzz
