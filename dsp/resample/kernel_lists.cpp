#include "dsp/resample/kernel_lists.h"

namespace dsp::resample {
namespace {

constexpr double power8[] = {
    8.0, 0.03983447921, 0.129570053212, 0.156299536071, 0.084178353573, 0.018708674012, 0.001094282508};

constexpr double power13[] = {13.0,
                              0.05334388816061538,
                              0.09948840661353847,
                              -0.5523586150938461,
                              -0.96833591689,
                              0.2909142788258462,
                              1.1917464242612308,
                              0.6030843760147693,
                              0.07212686520523076};

constexpr double series8[] = {8.0,
                              0.125,
                              0.194117084888939,
                              0.08883480823357748,
                              0.022122753640933936,
                              0.002478902484869871,
                              7.38484334237839e-05,
                              3.371125058247346e-09,
                              3.74911427827312e-09,
                              -1.594651940934445e-08,
                              1.0611265319746411e-08,
                              3.180517033162374e-09};

constexpr double series10[] = {10.0,           0.09991966,     0.200142671498,  0.1999988799964,  0.19426551865140002,
                               0.141105717886, 0.054357881018, 0.0078228941126, 0.000164891239632};

// The terms from the tenth on flatten the image bands that the cascade's 23-tap lowpass leaves: a least-squares fit of
// the kernel's spectrum there, held to 0 at both ends of the kernel. They lower the highest image by 13 dB. The two
// subnormal ones belong to the set and add nothing.
constexpr double series13[] = {13.0,
                               0.07692307692307693,
                               0.3636161165001,
                               1.194489746221777,
                               1.8352454548154924,
                               1.2924626750082309,
                               0.41479959754854384,
                               0.05103747392790277,
                               0.0012502776544880308,
                               2.6398485794435592e-07,
                               9.5545849151606402e-07,
                               -1.2031101565552697e-06,
                               7.5972999210455421e-07,
                               -1.5472154188962611e-07,
                               -2.121995791e-314,
                               -7.1123549263084596e-11,
                               -1.4694209745757615e-08,
                               7.4650216477903471e-07,
                               -7.7799106574448446e-07,
                               2.1614126450405216e-07,
                               -1.2953763566323122e-07,
                               3.657556297667025e-08,
                               1.0155137265824196e-07,
                               -3.6193009235990343e-07,
                               -1.3422131333558058e-07,
                               4.5549323735401721e-07,
                               -1.5091295542128115e-07,
                               -2.121995791e-314,
                               1.4700156999462027e-07,
                               -4.6344852764079899e-07,
                               3.3173670842303515e-07,
                               1.5615961996273345e-07,
                               -4.2785477270075878e-08,
                               -4.1232144241623839e-08,
                               7.7612237968522148e-08,
                               -1.1781284001733508e-07,
                               3.7368963220919225e-07,
                               -4.1016381857231919e-08,
                               -3.4459549245139339e-07,
                               1.3496559259455587e-07};
static_assert(sizeof series13 / sizeof *series13 == 40);

template <int32_t N>
constexpr kernel_list list(const double (&c)[N], int32_t (*build)(dsp_vec *, const dsp_vec *), int32_t table_length) {
  return {c, N, build, table_length};
}

}  // namespace

const kernel_list *find_kernel_list(int32_t kind) {
  static const kernel_list lists[] = {
      list(power8, dspc_rsmp_pcos, 8194),   list(power13, dspc_rsmp_pcos, 13314), list(series8, dspc_rsmp_cos, 2050),
      list(series10, dspc_rsmp_cos, 10242), list(series13, dspc_rsmp_cos, 13314),
  };
  constexpr int32_t count = sizeof lists / sizeof *lists;
  return kind >= 0 && kind < count ? &lists[kind] : nullptr;
}

}  // namespace dsp::resample
