// Real, complex and polar samples, magnitudes, phases and decibels.
#include <cmath>

#include "dsp/dsp.h"
#include "dsp/elementwise/in_place.h"
#include "dsp/elementwise/kernels.h"

namespace dsp {
namespace {

struct real_part {
  double operator()(double x) const { return x; }
  double operator()(dsp_complex z) const { return z.re; }
};

struct imaginary_part {
  double operator()(double) const { return 0.0; }
  double operator()(dsp_complex z) const { return z.im; }
};

struct to_complex {
  dsp_complex operator()(double x) const { return {x, 0.0}; }
  dsp_complex operator()(dsp_complex z) const { return z; }
};

struct conjugate {
  double operator()(double x) const { return x; }
  dsp_complex operator()(dsp_complex z) const { return {z.re, -z.im}; }
};

struct to_magnitude {
  template <class Sample>
  double operator()(Sample x) const {
    return magnitude(x);
  }
};

struct to_magnitude_squared {
  template <class Sample>
  double operator()(Sample x) const {
    return magnitude_squared(x);
  }
};

struct to_phase {
  template <class Sample>
  double operator()(Sample x) const {
    return angle(x);
  }
};

struct to_polar {
  template <class Sample>
  dsp_complex operator()(Sample x) const {
    return {magnitude(x), angle(x)};
  }
};

struct to_cartesian {
  double operator()(double x) const { return x; }
  dsp_complex operator()(dsp_complex z) const { return from_polar(z.re, z.im); }
};

}  // namespace
}  // namespace dsp

using namespace dsp;

int32_t dspi_real(dsp_vec *v) { return v->is_complex == 0 ? 0 : in_place(v, real_part()); }
int32_t dspi_imag(dsp_vec *v) { return in_place(v, imaginary_part()); }
int32_t dspi_rtoc(dsp_vec *v) { return v->is_complex != 0 ? 0 : in_place(v, to_complex()); }
int32_t dspi_conj(dsp_vec *v) { return v->is_complex == 0 ? 0 : in_place(v, conjugate()); }
int32_t dspi_mag(dsp_vec *v) { return in_place(v, to_magnitude()); }
int32_t dspi_magsq(dsp_vec *v) { return in_place(v, to_magnitude_squared()); }
int32_t dspi_phase(dsp_vec *v) { return in_place(v, to_phase()); }
int32_t dspi_rtop(dsp_vec *v) { return in_place(v, to_polar()); }
int32_t dspi_ptor(dsp_vec *v) { return v->is_complex == 0 ? 0 : in_place(v, to_cartesian()); }
int32_t dspi_db(dsp_vec *v, double factor) { return in_place(v, decibels(factor)); }
int32_t dspu_mag(const dsp_vec *in, dsp_vec *out) { return into(in, out, to_magnitude()); }
int32_t dspu_magsq(const dsp_vec *in, dsp_vec *out) { return into(in, out, to_magnitude_squared()); }
