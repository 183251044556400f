#include "dsp/core/sharing.h"

#include <algorithm>
#include <cmath>

#include "dsp/core/scratch.h"
#include "dsp/core/sizing.h"

namespace dsp {

// Compared as integers: pointers into different blocks have no order.
bool lies_within(const dsp_vec &view, const dsp_vec &whole) {
  if (view.data == nullptr || whole.data == nullptr) return false;
  const auto begin = reinterpret_cast<uintptr_t>(whole.data);
  const auto held = static_cast<uint64_t>(std::max<int64_t>(whole.capacity, doubles(whole)));
  const auto at = reinterpret_cast<uintptr_t>(view.data);
  return at >= begin && at - begin < std::max<uint64_t>(held, 1) * sizeof(double);
}

int32_t size_over(dsp_vec *out, int32_t held, const operand &a, const operand &b) {
  if (!a.shared_ && !b.shared_) return dsp_alloc(out);
  return dsp_realloc(out, held, (a.shared_ && a.is_complex_) || (b.shared_ && b.is_complex_));
}

double mean_spacing(double a, double b) {
  const double mean = (a + b) * 0.5;
  return std::isinf(mean) ? a * 0.5 + b * 0.5 : mean;
}

int32_t dspb_prepare_output(const dsp_vec &a, const dsp_vec &b, bool out_complex, dsp_vec *out, operands *ready) {
  const int32_t n = samples(a);
  if (n != samples(b)) return -1;
  const operand left(a, *out);
  const operand right(b, *out);
  out->dx = mean_spacing(a.dx, b.dx);
  out->is_complex = out_complex;
  out->length = n;
  if (size_over(out, n, left, right) != 0) return -1;
  *ready = {left.data(*out), right.data(*out), left.is_complex(), right.is_complex(), n};
  return 0;
}

int32_t dspb_prepare_output(const dsp_vec &a, const dsp_vec &b, dsp_vec *out, operands *ready) {
  return dspb_prepare_output(a, b, a.is_complex != 0 || b.is_complex != 0, out, ready);
}

output::output(dsp_vec *callers, std::initializer_list<const dsp_vec *> inputs) : callers_(callers), written_(callers) {
  if (std::any_of(inputs.begin(), inputs.end(), [=](const dsp_vec *in) { return shares_buffer(in, callers); }))
    written_ = scratch_output.obtain();
}

int32_t output::shape(int32_t length, bool is_complex, double dx) {
  written_->length = length;
  written_->is_complex = is_complex;
  written_->dx = dx;
  return dsp_alloc(written_);
}

}  // namespace dsp
