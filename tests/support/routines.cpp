#include "tests/support/routines.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <new>
#include <utility>

#include "tests/support/heap.h"

namespace support {
namespace {

using caller = std::function<int32_t(call &)>;

template <class F, std::size_t... I, class... N>
int32_t apply(F f, call &c, std::index_sequence<I...>, N... numbers) {
  return f(c[I]..., numbers...);
}

// A routine whose first arguments are all the signals, followed by these numbers.
template <class... P, class... N>
caller of(int32_t (*f)(P...), N... numbers) {
  return [=](call &c) { return apply(f, c, std::make_index_sequence<sizeof...(P) - sizeof...(N)>(), numbers...); };
}

const std::vector<int> any = {0, 1, 2, 7, 64, 2500};
const std::vector<int> few = {0, 1, 2, 7, 64};
const std::vector<int> transformed = {0, 1, 2, 7, 36, 64, 83};  // butterfly, passes, power of two, chirp
const std::vector<int> powers = {1, 2, 16, 64};
const std::vector<int> once = {0};

dsp_complex *points(const dsp_vec *v) { return reinterpret_cast<dsp_complex *>(v->data); }

int32_t gives_integer(call &c, int32_t i) { return c.gives(i); }

struct coefficients : dsph_rsmp_coef {
  explicit coefficients(double wanted) {
    const exempt building;
    dsph_rsmp_coef_init(this);
    dsph_rsmp_coef_alloc(this, 0);
    dsph_rsmp_coef_setup(this, 0, wanted, 0, 0);
  }
  ~coefficients() { dsph_rsmp_coef_destroy(this); }
  coefficients(const coefficients &) = delete;
  coefficients &operator=(const coefficients &) = delete;
};

// Kept for all tests, since making the kernel takes milliseconds.
const dsph_rsmp_coef &converter(double ratio) {
  static std::map<double, coefficients> made;
  return made.try_emplace(ratio, ratio).first->second;
}

int32_t convert(call &c, double ratio, bool with_state) {
  const dsph_rsmp_coef &coef = converter(ratio);
  if (!with_state) return dsph_rsmp(c[0], c[1], nullptr, &coef, nullptr);
  dsph_rsmp_state state;
  dsph_rsmp_state_init(&state);
  {
    const exempt building;
    dsph_rsmp_state_alloc(&coef, &state, c[0]->is_complex);
    dsph_rsmp_state_reset(&coef, &state);
  }
  const int32_t status = dsph_rsmp(c[0], c[1], c[2], &coef, &state);
  c.gives(state.delay1 + state.delay2);
  dsph_rsmp_state_destroy(&state);
  return status;
}

int32_t make_converter(call &c) {
  dsph_rsmp_coef coef;
  dsph_rsmp_coef_init(&coef);
  const int32_t status = dsph_rsmp_coef_alloc(&coef, 0);
  if (status == 0)
    for (int32_t i = 0; i < 20; ++i) c.gives(coef.kernel.data[600 * i] + coef.halfband.data[i]);
  dsph_rsmp_coef_destroy(&coef);
  return status;
}

// Complex, real and complex again: what the signals carry stays.
int32_t make_converter_state(call &c) {
  dsph_rsmp_state state;
  dsph_rsmp_state_init(&state);
  int32_t status = 0;
  for (const uint32_t is_complex : {1u, 0u, 1u}) {
    status = dsph_rsmp_state_alloc(&converter(5.4), &state, is_complex);
    if (status != 0) break;
    c.gives(state.stages), c.gives(state.stage_hist[1].length), c.gives(state.post_hist.is_complex);
    c.gives(state.pre_hist.data[2] += 0.5);
  }
  if (status == 0) status = dsph_rsmp_state_reset(&converter(5.4), &state);
  dsph_rsmp_state_destroy(&state);
  return status;
}

int32_t one_port(call &c) {
  const raising memory;
  try {
    Compute1PortTerms(points(c[0]), points(c[1]), points(c[2]), points(c[3]), points(c[4]), points(c[5]), 0,
                      c[0]->length);
  } catch (const std::bad_alloc &) {
    return -1;
  }
  return 0;
}

int32_t matrix_product(call &c) {
  const raising memory;
  constexpr int32_t sizes[][3] = {{3, 3, 3}, {2, 1, 4}, {4, 2, 2}, {1, 1, 1}, {0, 0, 0}};
  const auto [m, k, p] = sizes[c.variant];
  return MatrixMult(points(c[0]), points(c[1]), points(c[2]), m, k, p) == m * p ? 0 : -1;
}

int32_t inverse(call &c) {
  const raising memory;
  return invert(points(c[0]), c.variant + 1) == 1 ? 0 : -1;
}

// Equal samples come in any order: zeros of either sign and samples with a NaN are made alike.
int32_t sort(call &c) {
  const int32_t status = dspi_sort(c[0]);
  const int32_t width = c[0]->is_complex != 0 ? 2 : 1;
  for (double *x = c[0]->data, *const end = x + std::max(c[0]->length, 0) * width; x != end; x += width) {
    const bool is_nan = std::isnan(x[0]) || std::isnan(x[width - 1]);
    for (int32_t part = 0; part < width; ++part) x[part] = is_nan ? std::nan("") : x[part] + 0.0;
  }
  return status;
}

constexpr int32_t average_modes[] = {DSP_AVG_REPLACE,
                                     DSP_AVG_MEAN,
                                     DSP_AVG_MAX_HOLD,
                                     DSP_AVG_MIN_HOLD,
                                     DSP_AVG_HARMONIC,
                                     DSP_AVG_PERIODIC,
                                     9,
                                     DSP_AVG_POWER | DSP_AVG_MEAN,
                                     DSP_AVG_LIMIT | DSP_AVG_MEAN};
constexpr int32_t spectrum_flags[] = {0,
                                      DSP_SPECTRUM_INVERSE,
                                      DSP_SPECTRUM_TWO_SIDED,
                                      DSP_SPECTRUM_SUM,
                                      DSP_SPECTRUM_UNWINDOWED,
                                      DSP_SPECTRUM_TWO_SIDED | DSP_SPECTRUM_CENTRED,
                                      DSP_SPECTRUM_INVERSE | DSP_SPECTRUM_FROM_TWO_SIDED,
                                      DSP_SPECTRUM_INVERSE | DSP_SPECTRUM_ODD,
                                      DSP_SPECTRUM_RAW,
                                      DSP_SPECTRUM_RAW | DSP_SPECTRUM_INVERSE};
constexpr int32_t interpolations[] = {0, 1, 2, 3, 5, 16, 17, 18, 19, 21};

template <class Array>
int32_t one_of(const Array &values, const call &c) {
  return values[c.variant];
}

}  // namespace

// clang-format off
const std::vector<routine> &routines() {
  static const std::vector<routine> table = {
    // core
    {"dsp_alloc", "b*", few, 0xbc65de64a258a8d5, [](call &c) {
       c[0]->length = 90;
       const int32_t status = dsp_alloc(c[0]);
       if (status == 0) std::fill_n(c[0]->data, c[0]->is_complex != 0 ? 180 : 90, 0.5);
       return status;
     }},
    {"dsp_realloc", "b*", few, 0x3b49675d179becc0, [](call &c) {
       const int32_t n = c[0]->length;
       c[0]->length = 90;
       const int32_t status = dsp_realloc(c[0], n, c[0]->is_complex);
       if (status == 0) c[0]->length = n;
       return status;
     }},
    {"dsp_copy", "o i*", any, 0xc3f1311573f00755, of(dsp_copy)},
    {"dsp_copy_at_most", "o i*", any, 0x0b87f09aefb293de, [](call &c) { return dsp_copy_at_most(c[0], c[1], 5 * c.variant); }, 3},
    {"dspu_subvec", "i* o", any, 0x77fc7ea5c83e3221, [](call &c) { return dspu_subvec(c[0], c[1], c.variant - 2, 5 * c.variant); }, 5},
    {"dsp_append", "b* f*", any, 0xadbf7c6f5f9816f9, of(dsp_append)},
    {"dsp_append", "b* f*5", any, 0xc475ec4f973709a9, of(dsp_append)},
    {"dsp_cmp", "i* i*", any, 0x7409c0435408f349, [](call &c) {
       int32_t order = 9;
       return dsp_cmp(c[0], c[1], 2.0, &order) + gives_integer(c, order);
     }},

    // arithmetic and representations
    {"dspi_db", "b*", any, of_functions, of(dspi_db, 20.0)},
    {"dspi_real", "b*", any, 0x8109d4f0febb28cc, of(dspi_real)},
    {"dspi_imag", "b*", any, 0xef922fd95399b015, of(dspi_imag)},
    {"dspi_rtoc", "b*", any, 0x2d404723428cd500, of(dspi_rtoc)},
    {"dspi_conj", "b*", any, 0x9e0ad6b404d61538, of(dspi_conj)},
    {"dspi_neg", "b*", any, 0x366f3a7a789023b8, of(dspi_neg)},
    {"dspi_offset", "b*", any, 0xd7e0e2e9c76d6b90, of(dspi_offset, 0.3)},
    {"dspi_scale", "b*", any, 0xdfe3da5303f7bf17, of(dspi_scale, 0.3)},
    {"dspi_cscale", "b*", any, 0x5832b02bf7c54abe, of(dspi_cscale, 0.3, -0.7)},
    {"dspi_recip", "b*", any, 0x4d06bfc6fe2f52dd, of(dspi_recip)},
    {"dspi_sqrt", "br", any, 0x90e07e4a6d22de9b, of(dspi_sqrt)},
    {"dspi_sqrt", "bc", any, of_functions, of(dspi_sqrt)},
    {"dspi_square", "b*", any, 0x1a1ea318d1a809bd, of(dspi_square)},
    {"dspi_timesi", "b*", any, 0x3241736cc925bec4, of(dspi_timesi)},
    {"dspi_limit", "b*", any, 0xdf842ec47f2b4f27, [](call &c) {
       int32_t clipped = 9;
       return dspi_limit(c[0], 0.5, -0.4, &clipped) + gives_integer(c, clipped);
     }},
    {"dspi_zero", "b*", any, 0x9c3fd1dd0668f0b5, of(dspi_zero)},
    {"dspi_mag", "b*", any, 0xcba4cdc294fff936, of(dspi_mag)},
    {"dspi_magsq", "b*", any, 0x9b3e706247719a8a, of(dspi_magsq)},
    {"dspi_phase", "br", any, 0x9937b7b5285eb5d9, of(dspi_phase)},
    {"dspi_phase", "bc", any, of_functions, of(dspi_phase)},
    {"dspi_rtop", "br", any, 0x01d51602c6afd20c, of(dspi_rtop)},
    {"dspi_rtop", "bc", any, of_functions, of(dspi_rtop)},
    {"dspi_ptor", "b*", any, of_functions, of(dspi_ptor)},
    {"dspu_mag", "i* o", any, 0x3dbfee949e6e23d7, of(dspu_mag)},
    {"dspu_magsq", "i* o", any, 0x02cc386339094317, of(dspu_magsq)},
    {"dspu_sqrt", "ir o", any, 0x38d067945ef514f2, of(dspu_sqrt)},
    {"dspu_sqrt", "ic o", any, of_functions, of(dspu_sqrt)},

    // two signals into one
    {"dspb_add", "i* i* o", any, 0xdb66bd11c3db2f4c, of(dspb_add)},
    {"dspb_add", "i* i*5 o", any, 0xa0f263ea218ab5e3, of(dspb_add)},
    {"dspb_sub", "i* i* o", any, 0xa96b7f7ae51ada89, of(dspb_sub)},
    {"dspb_sub", "i* i*5 o", any, 0x50864a541dd28467, of(dspb_sub)},
    {"dspb_mul", "i* i* o", any, 0xbf0c5f33eaff3915, of(dspb_mul)},
    {"dspb_conj_mul", "i* i* o", any, 0xfdea955d93e9bfb3, of(dspb_conj_mul)},
    {"dspb_div", "i* i* o", any, 0x8bd42d09fa8e49dc, of(dspb_div)},
    {"dspb_avg_add", "i* i* o", any, 0xcc95ce879ffd9d7c, of(dspb_avg_add, 0.3)},
    {"dspb_max", "i* i* o", any, 0x0ff6337efc1c9643, of(dspb_max)},
    {"dspb_min", "i* i* o", any, 0xc77445e6e3ea8a56, of(dspb_min)},
    {"dspb_pmul", "i* i*9 o", any, 0xa10154d642437ec4, of(dspb_pmul)},
    {"dspb_ritoc", "ir ir o", any, 0xc848f6125e61b6d9, of(dspb_ritoc)},
    {"dspbs_dot", "i* i* o", any, 0x4f80e53931d4206d, of(dspbs_dot)},

    // elementary functions
    {"dspi_asin", "br", few, of_functions, of(dspi_asin)},
    {"dspi_acos", "br", few, of_functions, of(dspi_acos)},
    {"dspi_sinh", "br", few, of_functions, of(dspi_sinh)},
    {"dspi_cosh", "br", few, of_functions, of(dspi_cosh)},
    {"dspi_besy0", "br", few, of_functions, of(dspi_besy0)},
    {"dspi_besy1", "br", few, of_functions, of(dspi_besy1)},
    {"dspi_exp", "b*", any, of_functions, of(dspi_exp)},
    {"dspi_exp10", "b*", any, of_functions, of(dspi_exp10)},
    {"dspi_log", "b*", any, of_functions, of(dspi_log)},
    {"dspi_log10", "b*", any, of_functions, of(dspi_log10)},
    {"dspi_addcos", "b*", any, of_functions, [](call &c) { return dspi_addcos(c[0], c.variant, 0.3, 2.0, 0.1); }, 2},

    // order, length and calculus
    {"dspi_rev", "b*", any, 0x2dd28b652d6f6cb0, of(dspi_rev)},
    {"dspi_shift", "b*", any, 0xd2f97c4ee0369adb, of(dspi_shift, 3)},
    {"dspi_sort", "b*", any, 0x8b65f176ff3184e3, sort},
    {"dspi_swap_halves", "b*", any, 0x006c68bfbd20cc68, of(dspi_swap_halves)},
    {"dspi_swap_halves2", "b*", any, 0x7b438c0ed74826b4, of(dspi_swap_halves2)},
    {"dspi_zpad", "b*", any, 0x90af54e67dc65b04, of(dspi_zpad, 90)},
    {"dspi_zpad2", "b*", any, 0x3d57426d66298c1d, [](call &c) { return dspi_zpad2(c[0], 91, c.variant % 4 << 8 | c.variant / 4); }, 12},
    {"dspi_unzpad", "b*", any, 0xeb90356f98033a44, [](call &c) { return dspi_unzpad(c[0], 5, c.variant % 4 << 8 | c.variant / 4); }, 12},
    {"dspi_recon", "b*", any, 0x4993265a25798118, of(dspi_recon)},
    {"dspi_orecon", "b*", any, 0xc3cbb3f2dc501768, [](call &c) { return dspi_orecon(c[0], c.variant); }, 2},
    {"dspi_differ", "b*", any, 0x4bd5cb0052bc1011, of(dspi_differ)},
    {"dspi_integ", "b*", any, 0xee01e7c4412ea77f, of(dspi_integ)},
    {"dspi_pdiffer", "b*", any, 0x022a813eb8e39150, of(dspi_pdiffer)},
    {"dspi_unwrap", "bu", any, 0x783871b9559f52b3, of(dspi_unwrap)},
    {"dspi_unwrap_wnd", "bu", any, 0x563bc61daa641dbb, [](call &c) { return dspi_unwrap_wnd(c[0], 3 * c.variant); }, 3},
    {"dspi_edge", "br", any, 0xc5081814e44aad9d, [](call &c) { return dspi_edge(c[0], c.variant, 0.1); }, 4},

    // generators
    {"dspc_line", "b*", any, 0xc06c9dc2ea337b65, of(dspc_line, 0.3, 0.1)},
    {"dspc_cos", "b*", any, of_functions, of(dspc_cos, 0.3, 0.1)},
    {"dspc_cexp", "b*", any, of_functions, of(dspc_cexp, 0.3, 0.1)},

    // transforms
    {"dspi_fft", "b*", powers, of_transforms, [](call &c) { return dspi_fft(c[0], c.variant != 0); }, 2},
    {"dspi_bitrev", "b*", powers, 0x8e5ed2bfb8a16257, of(dspi_bitrev)},
    {"dspi_bitrev_scale", "b*", powers, 0x1789f2628026b9c9, of(dspi_bitrev_scale)},
    {"cf_dspi_fft", "bc", powers, of_transforms,
     [](call &c) { return cf_dspi_fft(c[0]->data, c[0]->length, 1, c.variant != 0); }, 2},
    {"dspi_rfft", "br", powers, of_transforms, of(dspi_rfft)},
    {"dspi_irfft", "b*", {1, 2, 3, 9, 33}, of_transforms, of(dspi_irfft)},
    {"dspi_dft", "b*", transformed, of_transforms, [](call &c) { return dspi_dft(c[0], c.variant); }, 2},
    {"dspi_rdft", "br", transformed, of_transforms, of(dspi_rdft)},
    {"dspi_irdft", "b*", transformed, of_transforms, [](call &c) { return dspi_irdft(c[0], c.variant != 0); }, 2},
    {"dspi_dct", "br", transformed, of_transforms, [](call &c) { return dspi_dct(c[0], c.variant); }, 4},
    {"dspi_hilbert", "b*", transformed, of_transforms, of(dspi_hilbert)},
    {"dspi_analytic", "b*", transformed, of_transforms, of(dspi_analytic)},

    // windows
    {"dsp_window_scale", "", {0, 7, 64}, of_functions, [](call &c) {
       double scale = 0.5;
       return dsp_window_scale(&scale, c.variant / 2, c.variant % 2, 20) + c.gives(scale);
     }, 50},
    {"dsp_window2_scale", "", once, of_functions, [](call &c) {
       double scale = 0.5;
       return dsp_window2_scale(&scale, c.variant / 2, c.variant % 2 | DSP_WND_ACTIVE, 20, 9.3) + c.gives(scale);
     }, 28},
    {"dsp_window_enbw", "", once, of_functions, [](call &c) {
       double enbw = 0.5;
       return dsp_window_enbw(&enbw, c.variant, 20) + c.gives(enbw);
     }, 25},
    {"dsp_window2_enbw", "", once, of_functions, [](call &c) {
       double enbw = 0.5;
       return dsp_window2_enbw(&enbw, c.variant, 20, 9.0) + c.gives(enbw);
     }, 14},
    {"dspi_window", "b*", few, of_functions, [](call &c) { return dspi_window(c[0], c.variant, 0); }, 25},
    {"dspi_window2", "b*", few, of_functions,
     [](call &c) { return dspi_window2(c[0], c.variant, DSP_WND_ACTIVE | DSP_WND_POWER, 9.3); }, 14},
    {"dspi_window_gauss", "b*", few, of_functions, of(dspi_window_gauss, 0.2, 0)},
    {"dspi_window_kaiser", "b*", few, of_functions, of(dspi_window_kaiser, 4.0, 1)},
    {"dspi_window_tukey", "b*", few, of_functions, of(dspi_window_tukey, 0.2, 2)},
    {"dspi_window_sinc", "b*", few, of_functions, of(dspi_window_sinc, 3.0, 1.0, 4)},
    {"dspi_window_cos", "b* ir3", few, of_functions, of(dspi_window_cos)},
    {"dspi_window_fir", "b*", few, of_functions, [](call &c) { return dspi_window_fir(c[0], c.variant); }, 25},

    // spectra, averages and correlation
    {"dsph_fft", "i* o", few, of_transforms,
     [](call &c) { return dsph_fft(c[0], c[1], 0, 0.7, DSP_WINDOW_HANN, one_of(spectrum_flags, c)); }, 10},
    {"dsph_dft", "i* o", few, of_transforms,
     [](call &c) { return dsph_dft(c[0], c[1], DSP_WINDOW_KAISER70, one_of(spectrum_flags, c)); }, 10},
    {"dsph_avg", "i* b* w", any, 0xa7bcfc58407773fc,
     [](call &c) { return dsph_avg(c[0], c[1], c[2], one_of(average_modes, c), 3, 2, -1.0, 2.0); }, 9},
    {"dsph_avg", "i* b*", any, 0xa5acd2c86c759981,
     [](call &c) { return dsph_avg(c[0], c[1], nullptr, one_of(average_modes, c), 3, 2, 0.3, 0.0); }, 9},
    {"dsph_avg", "i* b* w", any, of_functions, of(dsph_avg, int32_t{DSP_AVG_GEOMETRIC}, 2, 0, -1.0, 0.0)},
    {"dsph_corr", "i* i* o w", few, of_transforms, of(dsph_corr, 3, 1u)},
    {"dspb_corr", "i*9 i* o", few, of_transforms, of(dspb_corr, 2, 0u)},
    {"dspb_corr", "i*1 i*1 o", once, of_transforms, of(dspb_corr, 1, 0u)},
    {"cf_dsph_fft", "fr or200", few, of_transforms, [](call &c) {
       return cf_dsph_fft(c[0]->data, c[1]->data, c[0]->length, 0, 1.0, DSP_WINDOW_HANN, 0);
     }},

    // statistics, peak and regression
    {"dsps_sum", "i* o", any, 0x2ac6a0577413d610, of(dsps_sum)},
    {"dsps_mean", "i* o", any, 0xa57eb5f84affdd11, of(dsps_mean)},
    {"dsps_gmean", "i* o", any, of_functions, of(dsps_gmean)},
    {"dsps_hmean", "i* o", any, 0x3d5aeba482f2d131, of(dsps_hmean)},
    {"dsps_median", "i* o", any, 0xc7237d7d136afadb, of(dsps_median)},
    {"dsps_max", "i* o", any, 0x0f82f2adc5adf8bb, of(dsps_max)},
    {"dsps_min", "i* o", any, 0xd3f2f4c033ab1552, of(dsps_min)},
    {"dsps_magsq_sum", "i* o", any, 0x41b7fb8377219b12, of(dsps_magsq_sum)},
    {"dsps_rms", "i* o", any, 0x1469c01ffebba9b7, of(dsps_rms)},
    {"dsps_pop_var", "i* o", any, 0x85addd72697622d8, of(dsps_pop_var)},
    {"dsps_samp_var", "i* o", any, 0x1ddf181ea50b8abe, of(dsps_samp_var)},
    {"dsps_pop_stddev", "i* o", any, 0x6c1be97d8cfc9e15, of(dsps_pop_stddev)},
    {"dsps_samp_stddev", "i* o", any, 0x49a1dfe325e399ca, of(dsps_samp_stddev)},
    {"dsps_skew", "ir o", any, 0x341ef86db65fbc93, of(dsps_skew)},
    {"dsps_excess", "ir o", any, 0x5ec65cad56111266, of(dsps_excess)},
    {"dsps_hist", "i* o", any, 0xd7f113d236f5085b, of(dsps_hist, 0.1, 0.02, 30)},
    {"dsps_peak", "i* o", any, 0xcd120313af0ab884,
     [](call &c) { return dsps_peak(c[0], c[1], c.variant % 2 << 8 | c.variant / 2 << 12, 3); }, 8},
    {"dsps_peak", "i* o", any, of_functions,
     [](call &c) { return dsps_peak(c[0], c[1], (2 + c.variant % 2) << 8 | c.variant / 2 << 12, 3); }, 8},
    {"dsps_peval", "ir o", any, 0xd0c915146259be53, of(dsps_peval, 0.9)},
    {"dsps_lin_regres", "i* o", any, 0x2db25f09504c8718, of(dsps_lin_regres)},
    {"dsps_lin_regres2", "i* o", any, 0xc4cc8b0249d3d025, of(dsps_lin_regres2)},

    // zeros of polynomials
    {"dspi_proots", "b*", few, of_functions, of(dspi_proots)},
    {"dspi_pztoc", "b*", few, of_functions, of(dspi_pztoc)},
    {"dsps_psolve", "ir o", {2, 7, 64}, of_functions, of(dsps_psolve, 0.3)},
    {"dsps_pcsolve", "i* o", {2, 7, 64}, of_functions, of(dsps_pcsolve, 0.3, 0.4)},

    // filters
    {"dspc_fir", "b*", {0, 1, 8, 9}, of_functions, [](call &c) { return dspc_fir(c[0], c.variant, 0.2, 0.1); }, 11},
    {"dspc_fir2", "b*", {0, 64}, 0x713a7ce9a2808665, [](call &c) { return dspc_fir2(c[0], 100 + c.variant); }, 3},
    {"dspd_fir", "i* o f*5 sr4", any, 0x8a9eb28afff5e26d, of(dspd_fir)},
    {"dspd_fir", "i* o f*20", few, 0x649c739e9a04bf6c, [](call &c) { return dspd_fir(c[0], c[1], c[2], nullptr); }},
    {"dspd_fir", "i* o fr4000 s*3", {7, 64}, of_transforms, of(dspd_fir)},
    {"dspd_sfir", "i* o f*10 sr30", any, 0xc19ee1183c35e3e3, [](call &c) {
       return dspd_sfir(c[0], c[1], c[2], c.variant % 2, c.variant / 2, c[3]);
     }, 4},
    {"dspd_sfir", "i* o f*40 sr0", {7, 90}, of_transforms, [](call &c) { return dspd_sfir(c[0], c[1], c[2], 1, 0, c[3]); }},
    {"dspd_deci", "i* o sr1", any, 0xe5c1432801f1117d, [](call &c) { return dspd_deci(c[0], c[1], c.variant, c[2]); }, 4},
    {"dspd_hwfilt", "i* o s*12", any, 0xc5b63b47ddba8099, [](call &c) { return dspd_hwfilt(c[0], c[1], nullptr, c[2]); }},
    {"dspi_hwfilt", "b*", any, 0x1a056f3b52107c76, [](call &c) {
       dsp_free_internal();  // and with it the state that all calls share
       return dspi_hwfilt(c[0], nullptr);
     }},

    // sample-rate conversion
    {"dspc_rsmp", "b*", {0, 34}, of_functions, [](call &c) { return dspc_rsmp(c[0], c.variant); }, 5},
    {"dspc_rsmp_cos", "b* fr5", {0, 34}, of_functions, of(dspc_rsmp_cos)},
    {"dspc_rsmp_pcos", "b* fr5", {0, 34}, of_functions, of(dspc_rsmp_pcos)},
    {"dspd_rsmp", "i* or20 ft34 sr0", few, 0x11c0b8dd7d119c26, [](call &c) {
       return dspd_rsmp(c[0], c[1], c.variant % 2, c[2], 0.75 * c.variant, c[3]);
     }, 4},
    {"dspd_rsmp", "i* or20 ft34", few, 0x786211eb32f96dfd, [](call &c) { return dspd_rsmp(c[0], c[1], 1, c[2], 1.3, nullptr); }},
    {"dspd_rsmp2", "i* or20 sr0", {64}, of_functions, [](call &c) { return dspd_rsmp2(c[0], c[1], 1, 2, 1.3, c[2]); }},
    {"dsph_rsmp", "i* o w", {0, 7, 200}, 0xd304f060a3484a42, [](call &c) { return convert(c, c.variant < 2 ? 1.0 : 4.0, c.variant % 2); }, 4},
    {"dsph_rsmp", "i* o w", {0, 7, 200}, of_functions, [](call &c) { return convert(c, 2.7, c.variant != 0); }, 2},
    {"dsph_rsmp_coef_alloc", "", once, of_functions, make_converter},
    {"dsph_rsmp_state_alloc", "", once, 0x949f3c3aff484c01, make_converter_state},

    // interpolation
    {"dsp_interp", "iu i ir iu o", {4, 30}, 0x2af1c71c91c473d1, [](call &c) {
       return dsp_interp(c[0], c[1], c[2], c[3], c[4], one_of(interpolations, c));
     }, 10},
    {"dsp_cspline", "iu i iu o", {1, 4, 30}, 0xfaf0c50627131dfb, [](call &c) { return dsp_cspline(c[0], c[1], nullptr, c[2], c[3]); }},
    {"dspb_cspline_2d", "iu i o", {4, 30}, 0x99d0faa33e85f476, [](call &c) {
       return dspb_cspline_2d(c[0], c[1], c[2], 0.3, -0.2, c.variant % 4, c.variant / 4);
     }, 16},
    {"dspb_inter", "i* i* o", any, 0x73035aadf7b58e49, of(dspb_inter)},
    {"dspi_zinter", "b*", any, 0x614cdcb01329aab4, of(dspi_zinter)},

    // traces
    {"vfpdbMul1", "b", few, 0x51ef90f528c5d4b3, [](call &c) { return vfpdbMul1(0.3, c[0]->data, c[0]->length), 0; }},
    {"vfpdbMul2", "b", few, 0x51ef90f528c5d4b3, [](call &c) { return vfpdbMul2(0.3, c[0]->data, c[0]->length), 0; }},
    {"vfpsbMul2", "i", few, 0xe98dd9acd6de0468, [](call &c) {
       std::vector<float> x(c[0]->data, c[0]->data + c[0]->length);
       vfpsbMul2(0.3F, x.data(), c[0]->length);
       for (const float value : x) c.gives(static_cast<double>(value));
       return 0;
     }},
    {"vfpdb_ScaleToInt", "i", few, 0x099b2ec24545c909, [](call &c) {
       std::vector<int32_t> to(static_cast<std::size_t>(c[0]->length));
       const auto scale = c.variant == 0 ? vfpdb_ScaleToInt : vfpdb_ScaleToInt2;
       scale(c[0]->data, c[0]->length, -0.5, 0.3, to.data(), -1000, 1000);
       for (const int32_t value : to) c.gives(value);
       return 0;
     }, 2},
    {"vfpdb_ScaleToFP", "i b", few, 0xbd0ccd07ed47c21c, [](call &c) {
       return vfpdb_ScaleToFP(c[0]->data, c[0]->length, -0.5, 0.3, c[1]->data, -7.0, 9.0), 0;
     }},
    {"vfpd_FindMax", "i", few, 0x651fc9c950863695, [](call &c) { return gives_integer(c, vfpd_FindMax(c[0]->data, 0, c[0]->length)); }},
    {"vfpd_FindMin", "i", few, 0x5879a190cb4b84cb, [](call &c) { return gives_integer(c, vfpd_FindMin(c[0]->data, 0, c[0]->length)); }},
    {"vfpd_FindMax2", "i", {64}, 0x10058bc7be065b4f, [](call &c) { return gives_integer(c, vfpd_FindMax2(c[0]->data, 0, 64, 9, 50)); }},
    {"vfpd_FindMin2", "i", {64}, 0x1adcbf295d0e2e9b, [](call &c) { return gives_integer(c, vfpd_FindMin2(c[0]->data, 0, 64, 9, 50)); }},
    {"vfpd_ExpandLinear", "b", few, 0x136ac3728b111315, [](call &c) {
       return vfpd_ExpandLinear(c[0]->data, c[0]->length, 0.1, 7.3), 0;
     }},
    {"vfpd_ExpandLog", "b", few, of_functions, [](call &c) {
       return vfpd_ExpandLog(c[0]->data, c[0]->length, 0.1, 7.3), 0;
     }},
    {"vfpd_Smooth", "f b", {64}, 0x31edb36b87194243, [](call &c) {
       return gives_integer(c, vfpd_Smooth(c[0]->data, c[1]->data, 64, 5, 60, 7, c.variant));
     }, 2},
    {"vfpd_SmoothCpx", "fc bc", {64}, of_functions, [](call &c) {
       return gives_integer(c, vfpd_SmoothCpx(points(c[0]), points(c[1]), 64, 5, 60, 7));
     }},
    {"vfpd_FormatBuffer", "fc b", {64}, of_functions, [](call &c) {
       return vfpd_FormatBuffer(static_cast<uint32_t>(c.variant), points(c[0]), c[1]->data, 5, 60), 0;
     }, 6},
    {"vfpd_UnwrapPhase", "fc b", {64}, of_functions, [](call &c) {
       return vfpd_UnwrapPhase(points(c[0]), 5, 60, c[1]->data), 0;
     }},

    // calibration and matrices
    {"Compute1PortTerms", "bc bc bc ic ic fc", {0, 1, 9}, 0x5a45cb489d00298a, one_port},
    {"MatrixMult", "ic9 ic9 oc9", once, 0x9bd8f19ccf935487, matrix_product, 5},
    {"invert", "bc16", once, 0x51b212a33b100703, inverse, 4},
    {"vfpd_CircleFit", "fc", {7, 64}, of_functions, [](call &c) {
       dsp_complex centre;
       double radius, rms;
       const int32_t status = vfpd_CircleFit(points(c[0]), 1, c[0]->length, &centre, &radius, &rms);
       return c.gives(centre.re), c.gives(centre.im), c.gives(radius), c.gives(rms), status;
     }},
    {"CircularInterpolation", "ur fc7 f bc", {7}, of_functions, [](call &c) {
       return CircularInterpolation(c[0]->data, points(c[1]), 7, c[2]->data, points(c[3]), 7);
     }},
  };
  return table;
}
// clang-format on

}  // namespace support
