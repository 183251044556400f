// Fixed coefficient sets: the halves of the resampler's lowpasses (23 and 39 taps) and of a 9-tap interpolator.
#include <cstring>

#include "dsp/dsp.h"

namespace {

constexpr double taps12[] = {0.000652614993819046, 0.00161398511533566, 0.000548992786994134, 0.0116567216928761,
                             -0.00562175791231776, 0.0468479126026349,  -0.0276748405838295,  0.135579125376994,
                             -0.075108484786155,   0.303557392557081,   -0.139425088639288,   0.494746834127881};

constexpr double taps20[] = {0.000368132791542899, 0.000967915759393971, 0.000171001256853212, -0.00209709414433782,
                             -0.00134559393257076, 0.00376444811111315,  0.00369259510337955,  -0.00616294219783637,
                             -0.00824555590147736, 0.00885290712394496,  0.0157666480717501,   -0.0118857692786052,
                             -0.0283982005099745,  0.014655079795871,    0.0502662469080564,   -0.0170833584807637,
                             -0.0976221957445371,  0.0185823751149414,   0.315351886691414,    0.480803804305858};

constexpr double taps5[] = {0.002115989672005283, -0.007732946323003534, 0.0243458281985552, -0.09624514305502549,
                            1.155032543014937};

struct fixed_set {
  dsp_fir2_type kind;
  int32_t length;
  const double *taps;
};

constexpr fixed_set sets[] = {{DSP_FIR2_TAPS12, 12, taps12}, {DSP_FIR2_TAPS20, 20, taps20}, {DSP_FIR2_TAPS5, 5, taps5}};

}  // namespace

int32_t dspc_fir2(dsp_vec *h, dsp_fir2_type kind) {
  for (const fixed_set &set : sets) {
    if (set.kind != kind) continue;
    h->length = set.length;
    if (dsp_alloc(h) != 0) return -1;
    const bool was_complex = h->is_complex != 0;
    h->is_complex = 0;
    std::memcpy(h->data, set.taps, static_cast<std::size_t>(set.length) * sizeof(double));
    return was_complex ? dspi_rtoc(h) : 0;
  }
  return -1;
}
