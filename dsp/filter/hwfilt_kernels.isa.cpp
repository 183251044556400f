#pragma GCC diagnostic ignored "-Wpsabi"  // four lanes are passed between functions of this file only

#include "dsp/filter/hwfilt_kernels.h"

#include "dsp/simd/vector.h"

namespace dsp::filter {
namespace {

using quad = lanes<hwfilt_sections>;

// One section, or all four side by side: V is a double or a quad.
template <class V>
struct section {
  V s0, s1, s2;

  V step(const V &v) {
    const V u = v - 0.5 * s1;
    const V w = 0.25 * u + 0.5 * s0 + 0.5 * s1 + 0.25 * s2;
    s2 = s1;
    s1 = s0;
    s0 = u;
    return w;
  }
};

// All sections run side by side, each this many samples behind the section that feeds it, so that none has to wait.
constexpr int64_t lag = 4;
constexpr int64_t lead = lag * (hwfilt_sections - 1);
constexpr int64_t worth_staggering = 4 * lead;

// Runs all sections at once, from the state in which the first section is `lead` samples ahead of the last one until
// the first has used up its input. `fed` holds the outputs that each section has made and the next has not taken yet.
void run_staggered(const double *x, double *y, int64_t count, int32_t width, section<double> *cascade,
                   double (*fed)[lag]) {
  section<quad> all;
  quad w[lag];
  for (int i = 0; i < hwfilt_sections; ++i) {
    all.s0[i] = cascade[i].s0;
    all.s1[i] = cascade[i].s1;
    all.s2[i] = cascade[i].s2;
    for (int k = 0; k < lag; ++k) w[k][i] = fed[i][k];
  }
  int64_t n = lead;
  for (; n + lag <= count; n += lag)
    for (int k = 0; k < lag; ++k) {
      const quad in = {x[(n + k) * width]};
      w[k] = all.step(__builtin_shufflevector(w[k], in, 4, 0, 1, 2));
      y[(n + k - lead) * width] = w[k][hwfilt_sections - 1];
    }
  for (int i = 0; i < hwfilt_sections; ++i) {
    cascade[i] = {all.s0[i], all.s1[i], all.s2[i]};
    for (int k = 0; k < lag; ++k) fed[i][k] = w[k][i];
  }
}

// `count` is a whole number of lags.
void run_long(const double *x, double *y, int64_t count, int32_t width, section<double> *cascade) {
  // Each section runs as many samples ahead as the staggered run needs to begin.
  double fed[hwfilt_sections][lag] = {};
  double ready[lead];
  for (int64_t n = 0; n < lead; ++n) ready[n] = x[n * width];
  for (int i = 0; i < hwfilt_sections - 1; ++i) {
    const int64_t ahead = lead - i * lag;
    for (int64_t n = 0; n < ahead; ++n) ready[n] = cascade[i].step(ready[n]);
    for (int64_t k = 0; k < lag; ++k) fed[i][k] = ready[ahead - lag + k];
  }
  run_staggered(x, y, count, width, cascade, fed);
  // The later sections catch up: each takes what the section before had ready, then what that made while catching up.
  for (int64_t n = 0; n < lead; ++n) ready[n] = 0.0;
  for (int i = 1; i < hwfilt_sections; ++i) {
    for (int64_t n = (i - 1) * lag; n-- > 0;) ready[n + lag] = ready[n];
    for (int64_t k = 0; k < lag; ++k) ready[k] = fed[i - 1][k];
    for (int64_t n = 0; n < i * lag; ++n) ready[n] = cascade[i].step(ready[n]);
  }
  for (int64_t n = 0; n < lead; ++n) y[(count - lead + n) * width] = ready[n];
}

void run_channel(const double *x, double *y, int64_t count, double *state, int32_t width) {
  section<double> cascade[hwfilt_sections];
  for (int i = 0; i < hwfilt_sections; ++i) {
    const double *s = state + hwfilt_section_values * i * width;
    cascade[i] = {s[0], s[width], s[2 * width]};
  }
  int64_t n = 0;
  if (count >= worth_staggering) {
    n = count / lag * lag;
    run_long(x, y, n, width, cascade);
  }
  for (; n < count; ++n) {
    double v = x[n * width];
    for (section<double> &s : cascade) v = s.step(v);
    y[n * width] = v;
  }
  for (int i = 0; i < hwfilt_sections; ++i) {
    double *s = state + hwfilt_section_values * i * width;
    s[0] = cascade[i].s0;
    s[width] = cascade[i].s1;
    s[2 * width] = cascade[i].s2;
  }
}

}  // namespace

namespace DSP_ISA {
extern const hwfilt_kernel_set hwfilt_set = {run_channel};
}

}  // namespace dsp::filter
