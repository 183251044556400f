// Lengthening with zeros, cutting, and rebuilding a two-sided spectrum from one side.
#include <cmath>
#include <cstring>

#include "dsp/core/move_doubles.h"
#include "dsp/core/sizing.h"
#include "dsp/dsp.h"
#include "dsp/simd/traversal.h"

namespace dsp::elementwise {
namespace {

// Where the samples of the shorter signal lie in the longer one: `head` of them from `head_at` on, the rest at its end.
struct placement {
  int32_t head;
  int32_t head_at;
};

constexpr int32_t scale_mask = 3;
constexpr int32_t place_mask = 0x700;

bool place(int32_t mode, int32_t shorter, int32_t longer, placement *p) {
  const int32_t gap = longer - shorter;
  switch (mode & place_mask) {
    case DSP_PAD_FRONT:
      *p = {shorter, 0};
      return true;
    // Sample `shorter`/2 lands on sample `longer`/2.
    case DSP_PAD_CENTRE:
      *p = {shorter, gap / 2 + (longer % 2 == 0 && shorter % 2 != 0 ? 1 : 0)};
      return true;
    case DSP_PAD_BACK:
      *p = {shorter, gap};
      return true;
    case DSP_PAD_SPLIT:
      *p = {shorter - shorter / 2, 0};
      return true;
    default:
      return false;
  }
}

bool scale_factor(int32_t mode, int32_t from, int32_t to, double *factor) {
  const double ratio = from > 0 && to > 0 ? static_cast<double>(to) / from : 1.0;
  switch (mode & scale_mask) {
    case DSP_PAD_SCALED:
      *factor = ratio;
      return true;
    case DSP_PAD_ROOT_SCALED:
      *factor = std::sqrt(ratio);
      return true;
    case DSP_PAD_UNSCALED:
      *factor = 1.0;
      return true;
    default:
      return false;
  }
}

// Overlapping ranges are safe: the loop runs in the direction of the move.
void move_scaled(double *to, const double *from, int64_t n, double factor) {
  if (factor == 1.0) {
    if (n > 0) dsp_move_doubles(to, from, static_cast<std::size_t>(n) * sizeof(double));
  } else if (to <= from) {
    DSP_INDEPENDENT
    for (int64_t i = 0; i < n; ++i) to[i] = factor * from[i];
  } else {
    DSP_INDEPENDENT
    for (int64_t i = n - 1; i >= 0; --i) to[i] = factor * from[i];
  }
}

void clear(double *at, int64_t n) {
  if (n > 0) std::memset(at, 0, static_cast<std::size_t>(n) * sizeof(double));
}

// Samples n ... length - 1 become the conjugates of the samples that mirror them about 0.
int32_t mirror(dsp_vec *v, int64_t length) {
  const int32_t n = samples(*v);
  if (length > INT32_MAX) return -1;
  v->length = static_cast<int32_t>(length);
  if (dsp_realloc(v, n, v->is_complex) != 0) return -1;
  if (v->is_complex != 0) {
    auto *z = as<dsp_complex>(v->data);
    DSP_INDEPENDENT
    for (int64_t m = n; m < length; ++m) z[m] = {z[length - m].re, -z[length - m].im};
  } else {
    double *x = v->data;
    DSP_INDEPENDENT
    for (int64_t m = n; m < length; ++m) x[m] = x[length - m];
  }
  return 0;
}

}  // namespace
}  // namespace dsp::elementwise

using namespace dsp;
using namespace dsp::elementwise;

int32_t dspi_zpad(dsp_vec *v, int32_t length) { return dspi_zpad2(v, length, DSP_PAD_UNSCALED); }

int32_t dspi_zpad2(dsp_vec *v, int32_t length, int32_t mode) {
  const int32_t old = samples(*v);
  if (length <= old) return 0;
  v->length = length;
  if (dsp_realloc(v, old, v->is_complex) != 0) return -1;
  double factor;
  placement p;
  if (!scale_factor(mode, old, length, &factor) || !place(mode, old, length, &p)) return -1;
  const int64_t width = v->is_complex != 0 ? 2 : 1;
  const int64_t head = p.head * width, head_at = p.head_at * width;
  const int64_t tail = old * width - head, tail_at = length * width - tail;
  move_scaled(v->data + tail_at, v->data + head, tail, factor);
  move_scaled(v->data + head_at, v->data, head, factor);
  clear(v->data, head_at);
  clear(v->data + head_at + head, tail_at - head_at - head);
  return 0;
}

int32_t dspi_unzpad(dsp_vec *v, int32_t length, int32_t mode) {
  const int32_t old = samples(*v);
  if (old <= length) return 0;
  const int32_t kept = not_negative(length);
  double factor;
  placement p;
  if (!scale_factor(mode, old, kept, &factor) || !place(mode, kept, old, &p)) return -1;
  const int64_t width = v->is_complex != 0 ? 2 : 1;
  const int64_t head = p.head * width, tail = kept * width - head;
  move_scaled(v->data, v->data + p.head_at * width, head, factor);
  move_scaled(v->data + head, v->data + old * width - tail, tail, factor);
  v->length = kept;
  return 0;
}

int32_t dspi_recon(dsp_vec *v) { return samples(*v) < 3 ? 0 : dspi_orecon(v, 0); }

int32_t dspi_orecon(dsp_vec *v, int32_t odd) {
  const int64_t n = samples(*v);
  if (n < 2 || (odd == 0 && n == 2)) return 0;
  return mirror(v, 2 * (n - 1) + (odd != 0 ? 1 : 0));
}
