// Running averages over successive spectra.
#include <cstdint>

#include "dsp/core/sharing.h"
#include "dsp/core/sizing.h"
#include "dsp/core/temporary.h"
#include "dsp/dsp.h"

namespace dsp::spectrum {
namespace {

double derived_weight(int32_t flags, int32_t count, double limit) {
  double effective = count;
  if ((flags & DSP_AVG_LIMIT) != 0 && limit > 0.0 && effective >= limit) effective = limit;
  return 1.0 / effective;
}

using in_place = int32_t (*)(dsp_vec *);

// The mean of f(x), mapped back by the inverse of f: reciprocal and reciprocal, or logarithm and exponential.
int32_t average_mapped(const dsp_vec *in, dsp_vec *avg, dsp_vec *work, double weight, in_place map, in_place back) {
  if (samples(*in) != samples(*avg)) return -1;  // checked before the average is mapped
  if (in != work && dsp_copy(work, in) != 0) return -1;
  map(work);
  map(avg);
  return dspb_avg_add(work, avg, avg, weight) != 0 ? -1 : back(avg);
}

bool replaces(int32_t period, int32_t count) { return period == 1 || (period > 0 && count % period == 1); }

int32_t fold(const dsp_vec *in, dsp_vec *avg, dsp_vec *work, int32_t flags, int32_t count, int32_t period,
             double weight, double limit) {
  temporary own;
  if (work == nullptr || shares_buffer(*work, *in) || shares_buffer(*work, *avg)) work = own.get();
  if ((flags & DSP_AVG_POWER) != 0) {
    if (dspu_magsq(in, work) != 0) return -1;
    in = work;
  }
  const int32_t mode = flags & DSP_AVG_MODE_MASK;
  if (count < 2 || mode == DSP_AVG_REPLACE) return dsp_copy(avg, in);
  if (weight < 0.0) weight = derived_weight(flags, count, limit);
  switch (mode) {
    case DSP_AVG_MEAN:
      return dspb_avg_add(in, avg, avg, weight);
    case DSP_AVG_MAX_HOLD:
      return dspb_max(in, avg, avg);
    case DSP_AVG_MIN_HOLD:
      return dspb_min(in, avg, avg);
    case DSP_AVG_HARMONIC:
      return average_mapped(in, avg, work, weight, dspi_recip, dspi_recip);
    case DSP_AVG_GEOMETRIC:
      return average_mapped(in, avg, work, weight, dspi_log, dspi_exp);
    case DSP_AVG_PERIODIC:
      return replaces(period, count) ? dsp_copy(avg, in) : 0;
    default:
      return 0;
  }
}

}  // namespace
}  // namespace dsp::spectrum

using namespace dsp;
using namespace dsp::spectrum;

int32_t dsph_avg(const dsp_vec *in, dsp_vec *avg, dsp_vec *work, int32_t flags, int32_t count, int32_t period,
                 double weight, double limit) {
  if (in == nullptr || avg == nullptr) return -1;
  const int32_t status = fold(in, avg, work, flags, count, period, weight, limit);
  if (avg->data == nullptr) avg->length = 0;  // memory ran out: the next call must not read samples
  return status;
}
