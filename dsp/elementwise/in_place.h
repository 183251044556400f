// Routines that replace each sample by a function of it.
#pragma once

#include <cstdint>

#include "dsp/core/sharing.h"
#include "dsp/core/sizing.h"
#include "dsp/elementwise/unary_kernels.h"
#include "dsp/simd/traversal.h"

namespace dsp::elementwise {

// The loop of a kernel that is overloaded on real and complex samples.
template <class Kernel>
void loop_of(double *out, const double *in, int64_t n, bool is_complex, dsp_complex) {
  each_sample(out, in, n, is_complex, Kernel());
}

// The representation of the result.
enum class becomes { same, real, complex };

constexpr bool complex_after(becomes result, bool before) {
  return result == becomes::same ? before : result == becomes::complex;
}

inline int32_t in_place(dsp_vec *v, becomes result, unary_loop loop, dsp_complex c = {0.0, 0.0}) {
  const bool was_complex = v->is_complex != 0;
  v->is_complex = complex_after(result, was_complex);
  if (v->is_complex != 0 && !was_complex && dsp_realloc(v, v->length, 0) != 0) return -1;
  loop(v->data, v->data, samples(*v), was_complex, c);
  return 0;
}

// The same into another signal, for loops that keep or narrow the representation.
inline int32_t into(const dsp_vec *in, dsp_vec *out, becomes result, unary_loop loop) {
  operands ready;
  if (dspb_prepare_output(*in, *in, complex_after(result, in->is_complex != 0), out, &ready) != 0) return -1;
  loop(out->data, ready.a, ready.length, ready.a_complex, {0.0, 0.0});
  return 0;
}

}  // namespace dsp::elementwise
