// Routines that replace each sample by a function of it. The kernel is overloaded on the sample type; what it returns
// is the new representation.
#pragma once

#include <type_traits>
#include <utility>

#include "dsp/core/operands.h"
#include "dsp/core/sizing.h"
#include "dsp/core/traversal.h"

namespace dsp {

template <class Kernel, class Sample>
using result_of = decltype(std::declval<Kernel>()(std::declval<Sample>()));

template <class Sample>
constexpr bool is_complex_sample = std::is_same_v<Sample, dsp_complex>;

template <class Kernel>
int32_t in_place(dsp_vec *v, Kernel kernel) {
  const bool was_complex = v->is_complex != 0;
  const bool is_complex =
      was_complex ? is_complex_sample<result_of<Kernel, dsp_complex>> : is_complex_sample<result_of<Kernel, double>>;
  v->is_complex = is_complex;
  if (is_complex && !was_complex && dsp_realloc(v, v->length, 0) != 0) return -1;
  const double *in = v->data;
  if (was_complex)
    walk<result_of<Kernel, dsp_complex>>(v->data, samples(*v), kernel, as<dsp_complex>(in));
  else
    walk<result_of<Kernel, double>>(v->data, samples(*v), kernel, in);
  return 0;
}

// The same into another signal, for kernels that make no sample wider.
template <class Kernel>
int32_t into(const dsp_vec *in, dsp_vec *out, Kernel kernel) {
  constexpr bool keeps_complex = is_complex_sample<result_of<Kernel, dsp_complex>>;
  operands ready;
  if (dspb_prepare_output(*in, *in, keeps_complex && in->is_complex != 0, out, &ready) != 0) return -1;
  if (ready.a_complex)
    walk<result_of<Kernel, dsp_complex>>(out->data, ready.length, kernel, as<dsp_complex>(ready.a));
  else
    walk<result_of<Kernel, double>>(out->data, ready.length, kernel, ready.a);
  return 0;
}

}  // namespace dsp
