// Sums and moments of data that are hard on them, beside GSL.
#include <functional>

#include "bench/accuracy/report.h"
#include "bench/noise.h"
#ifdef HAVE_GSL
#include <gsl/gsl_fit.h>
#include <gsl/gsl_statistics_double.h>
#endif

namespace accuracy {
namespace {

double number(int32_t (*reduce)(const dsp_vec *in, dsp_vec *out), doubles &x) {
  doubles result(20);
  const dsp_vec in = borrow(x);
  dsp_vec out = borrow(result);
  out.capacity = out.length;
  return reduce(&in, &out) == 0 ? result[0] : std::nan("");
}

struct moments {
  wide sum = 0, squares = 0, mean = 0, deviation = 0, skewness = 0, excess = 0;

  explicit moments(const doubles &x) {
    const auto n = static_cast<wide>(x.size());
    for (const double v : x) sum += v, squares += static_cast<wide>(v) * v;
    for (const double v : x) mean += (v - sum / n) / n;  // what rounding lost
    mean += sum / n;
    wide second = 0, third = 0, fourth = 0;
    for (const double v : x) {
      const wide d = v - mean;
      second += d * d;
      third += d * d * d;
      fourth += d * d * d * d;
    }
    deviation = std::sqrt(second / (n - 1));
    const wide spread = std::sqrt(second / n);
    skewness = third / n / (spread * spread * spread);
    excess = fourth / n / (spread * spread * spread * spread) - 3;
  }
};

// The result of GSL; NaN without GSL.
double gsl([[maybe_unused]] double (*reduce)(const double *x, std::size_t stride, std::size_t n),
           [[maybe_unused]] const doubles &x) {
  return reduce == nullptr ? std::nan("") : reduce(x.data(), 1, x.size());
}

#ifdef HAVE_GSL
#define DSP_GSL(name) gsl_stats_##name
#else
#define DSP_GSL(name) nullptr
#endif

void measure(const std::string &name, doubles x) {
  const moments m(x);
  row({name, figure(relative(number(dsps_mean, x), m.mean)), figure(relative(gsl(DSP_GSL(mean), x), m.mean)),
       figure(relative(number(dsps_samp_stddev, x), m.deviation)), figure(relative(gsl(DSP_GSL(sd), x), m.deviation))});
}

doubles alternating(double first, double base) {
  doubles x(1001, first);
  for (std::size_t i = 1; i < x.size(); ++i) x[i] = base + (i % 2 == 1 ? 0.1 : 0.3);
  return x;
}

doubles shifted(std::size_t n, double by) {
  doubles x = noise(n, 21);
  for (double &v : x) v += by;
  return x;
}

void shapes() {
  doubles x = shifted(1000000, 1.0);
  for (double &v : x) v *= v;  // skewed
  const moments m(x);
  table({"squares of 10^6 samples in 0 to 2", "ours"});
  const auto line = [&](const char *name, auto reduce, wide exact) {
    row({name, figure(relative(number(reduce, x), exact))});
  };
  line("sum", dsps_sum, m.sum);
  line("root mean square", dsps_rms, std::sqrt(m.squares / static_cast<wide>(x.size())));
  line("skewness", dsps_skew, m.skewness);
  line("excess", dsps_excess, m.excess);
}

// y on x of points with both coordinates around `pedestal`.
void fit(double pedestal) {
  const std::size_t n = 100001;
  doubles px = shifted(n, pedestal), py = noise(n, 22), z(2 * n);
  wide mx = 0, my = 0, vx = 0, cov = 0;
  for (std::size_t i = 0; i < n; ++i) {
    py[i] = pedestal + 0.5 * (px[i] - pedestal) + 0.1 * py[i];
    z[2 * i] = px[i], z[2 * i + 1] = py[i];
    mx += (px[i] - static_cast<wide>(pedestal)) / n, my += (py[i] - static_cast<wide>(pedestal)) / n;
  }
  mx += pedestal, my += pedestal;
  for (std::size_t i = 0; i < n; ++i) vx += (px[i] - mx) * (px[i] - mx), cov += (px[i] - mx) * (py[i] - my);
  const wide slope = cov / vx;
  doubles line(2);
  dsp_vec points = borrow(z), out = borrow(line);
  points.is_complex = 1, points.length = static_cast<int32_t>(n);
  out.capacity = 2;
  dsps_lin_regres(&points, &out);
  double theirs = std::nan("");
#ifdef HAVE_GSL
  double c0, v00, v01, v11, rest;
  gsl_fit_linear(px.data(), 1, py.data(), 1, n, &c0, &theirs, &v00, &v01, &v11, &rest);
#endif
  row({figure(pedestal), figure(relative(line[0], slope)), figure(relative(theirs, slope))});
}

}  // namespace

void statistics() {
  heading("Statistics",
          "Relative errors in eps, against the data as doubles hold them. NumAcc1 to 4 are NIST's reference sets for "
          "univariate summaries, made from their definitions; the others are noise from -1 to 1 on a pedestal.");
  table({"data", "mean", "GSL", "deviation", "GSL"});
  measure("NumAcc1", {10000001, 10000003, 10000002});
  measure("NumAcc2", alternating(1.2, 1.0));
  measure("NumAcc3", alternating(1000000.2, 1000000.0));
  measure("NumAcc4", alternating(10000000.2, 10000000.0));
  measure("1000 on 1e8", shifted(1000, 1e8));
  measure("1 000 000 on 1e8", shifted(1000000, 1e8));
  measure("10 000 000 on 0.5", shifted(10000000, 0.5));
  shapes();
  table({"slope of 100 001 points around", "ours", "GSL"});
  for (const double pedestal : {0.0, 1e4, 1e8}) fit(pedestal);
  held_by(
      "`Statistics.EqualTheirDefinitions`, "
      "`Regression.EqualsTheDefinition`");
}

}  // namespace accuracy
