// Scaling traces, mapping them onto a display range, filling axes.
#include <cmath>
#include <cstdint>

#include "dsp/dsp.h"
#include "dsp/trace/trace_kernels.h"

using dsp::trace::trace_kernels;

void vfpdbMul1(double scale, double *buf, int32_t n) { trace_kernels().scale(scale, buf, n); }

void vfpdbMul2(double scale, double *buf, int32_t n) { trace_kernels().scale(scale, buf, n); }

void vfpsbMul2(float scale, float *buf, int32_t n) { trace_kernels().scale_single(scale, buf, n); }

void vfpdb_ScaleToInt(const double *in, int32_t n, double lo, double hi, int32_t *out, int32_t out_lo, int32_t out_hi) {
  const double k = static_cast<double>(int64_t{out_hi} - out_lo) / (hi - lo);
  trace_kernels().map_to_int(in, n, lo, k, out, out_lo);
}

void vfpdb_ScaleToInt2(const double *in, int32_t n, double lo, double hi, int32_t *out, int32_t out_lo,
                       int32_t out_hi) {
  vfpdb_ScaleToInt(in, n, lo, hi, out, out_lo, out_hi);
}

void vfpdb_ScaleToFP(const double *in, int32_t n, double lo, double hi, double *out, double out_lo, double out_hi) {
  trace_kernels().map(in, n, lo, (out_hi - out_lo) / (hi - lo), out, out_lo);
}

void vfpd_ExpandLinear(double *out, int32_t n, double first, double last) {
  if (n <= 0) return;
  if (n >= 2) {
    trace_kernels().line(out, n - 1, first, (last - first) / (n - 1));
    out[n - 1] = last;
  }
  out[0] = first;
}

void vfpd_ExpandLog(double *out, int32_t n, double first, double last) {
  if (n <= 0 || !(first > 0.0) || !(last > 0.0)) return;
  out[0] = first;
  if (n == 1) return;
  const double begin = std::log10(first);
  const double step = (std::log10(last) - begin) / (n - 1);
  for (int32_t i = 1; i < n - 1; ++i) out[i] = std::pow(10.0, begin + step * i);
  out[n - 1] = last;
}
