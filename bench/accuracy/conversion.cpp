// Sample-rate conversion of tones: what comes out beside a tone of the pass band, and what is left of one beyond it.
#include <cmath>
#include <functional>
#include <string>

#include "bench/accuracy/report.h"

#ifdef HAVE_SOXR
#include <soxr.h>
#endif

namespace accuracy {
namespace {

constexpr int shown = 1000;    // outputs looked at: whole cycles of every tone
constexpr int settling = 300;  // outputs before them

using converter = std::function<doubles(double ratio, doubles in)>;

doubles ours(double ratio, doubles in) {
  const dsp_vec x = borrow(in);
  dsp_vec y;
  dsp_init(&y);
  dsph_rsmp_coef coef;
  dsph_rsmp_coef_init(&coef);
  dsph_rsmp_coef_alloc(&coef, 0);
  dsph_rsmp_coef_setup(&coef, 0, ratio, 0, 0);
  dsph_rsmp(&x, &y, nullptr, &coef, nullptr);
  const doubles out(y.data, y.data + y.length);
  dsph_rsmp_coef_destroy(&coef);
  dsp_destroy(&y);
  return out;
}

#ifdef HAVE_SOXR
converter soxr(unsigned long recipe) {
  return [recipe](double ratio, doubles in) {
    doubles out(in.size());
    const soxr_io_spec_t io = soxr_io_spec(SOXR_FLOAT64_I, SOXR_FLOAT64_I);
    const soxr_quality_spec_t quality = soxr_quality_spec(recipe, 0);
    std::size_t made = 0;
    soxr_oneshot(ratio, 1, 1, in.data(), in.size(), nullptr, out.data(), out.size(), &made, &io, &quality, nullptr);
    out.resize(made);
    return out;
  };
}
#endif

// The outputs for a tone of `frequency` cycles per output sample.
doubles tone(const converter &convert, double ratio, double frequency) {
  doubles in(static_cast<std::size_t>((shown + 3 * settling) * ratio));
  for (std::size_t i = 0; i < in.size(); ++i)
    in[i] = static_cast<double>(std::cos(2 * pi * std::fmod(static_cast<wide>(i) * frequency / ratio, 1.0L)));
  const doubles out = convert(ratio, in);
  return {out.begin() + settling, out.begin() + settling + shown};
}

double decibels(wide mean_square) { return static_cast<double>(10 * std::log10(std::max(2 * mean_square, 1e-30L))); }

double residue(const doubles &y, double frequency) {
  wide re = 0, im = 0, left = 0;
  const auto angle = [=](int n) { return 2 * pi * std::fmod(static_cast<wide>(n) * frequency, 1.0L); };
  for (int n = 0; n < shown; ++n) {
    re += 2 * y[n] * std::cos(angle(n)) / shown;
    im += 2 * y[n] * std::sin(angle(n)) / shown;
  }
  for (int n = 0; n < shown; ++n) left += std::pow(y[n] - re * std::cos(angle(n)) - im * std::sin(angle(n)), 2) / shown;
  return decibels(left);
}

double worst_residue(const converter &convert, double ratio) {
  double worst = -400;
  for (double f = 0.005; f < 0.3951; f += 0.01) worst = std::max(worst, residue(tone(convert, ratio, f), f));
  return worst;
}

// The level of what lies in the pass band.
double in_pass_band(doubles y) {
  dsp_vec v;
  dsp_init(&v);
  const dsp_vec outputs = borrow(y);
  double power = 0;
  if (dsp_copy(&v, &outputs) == 0 && dspi_window(&v, DSP_WINDOW_BLACKMAN_HARRIS4, DSP_WND_POWER) == 0 &&
      dspi_rdft(&v) == 0)
    for (int bin = 0; bin <= shown * 39 / 100; ++bin)
      power += v.data[2 * bin] * v.data[2 * bin] + v.data[2 * bin + 1] * v.data[2 * bin + 1];
  dsp_destroy(&v);
  return decibels(2 * power);
}

double worst_alias(const converter &convert, double ratio) {
  double worst = -400;
  for (double f = 0.61; f < 0.5 * ratio; f += 0.0037) worst = std::max(worst, in_pass_band(tone(convert, ratio, f)));
  return worst;
}

}  // namespace

void conversion() {
  heading(
      "Sample-rate conversion",
      "`dsph_rsmp`, in dB: the most that comes out beside a tone of 0 to 0.39 of the output rate, and the most that a "
      "tone from 0.61 of it on leaves there. -300 stands for nothing, `-` for no such tone.");
  cells head = {"ratio", "residue", "aliases"};
  std::vector<converter> converters = {ours};
#ifdef HAVE_SOXR
  head.insert(head.end(), {"soxr medium", "", "soxr high", "", "soxr very high", ""});
  for (const unsigned long recipe : {SOXR_MQ, SOXR_HQ, SOXR_VHQ}) converters.push_back(soxr(recipe));
#endif
  table(head);
  for (const char *name : {"1.05", "1.25", "1.5", "2.7", "5.3", "8"}) {
    const double ratio = std::stod(name);
    cells line = {name};
    for (const converter &c : converters) {
      const double alias = worst_alias(c, ratio);
      line.push_back(std::to_string(std::lround(worst_residue(c, ratio))));
      line.push_back(alias > -400 ? std::to_string(std::lround(alias)) : "-");
    }
    row(line);
  }
  held_by("`Converter.PassesTheBandInTimeAndStopsWhatWouldFallIntoIt`");
}

}  // namespace accuracy
