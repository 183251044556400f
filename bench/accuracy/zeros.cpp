// Zeros of polynomials and the way back, circles and arcs.
#include <complex>
#include <functional>
#include <random>

#include "bench/accuracy/report.h"
#ifdef HAVE_GSL
#include <gsl/gsl_poly.h>
#endif

namespace accuracy {
namespace {

using complex = std::complex<double>;
using wide_complex = std::complex<wide>;

std::mt19937_64 engine(1);

double normal() { return std::normal_distribution<double>()(engine); }

// |p(z)| over the sum of the moduli of its terms, in eps.
double backward_error(const doubles &c, complex z) {
  const wide_complex x = z;
  wide_complex value = 0;
  wide terms = 0;
  for (std::size_t k = c.size(); k-- > 0;) {
    value = value * x + static_cast<wide>(c[k]);
    terms = terms * std::abs(x) + std::abs(static_cast<wide>(c[k]));
  }
  return static_cast<double>(std::abs(value) / terms) / eps;
}

double largest_error(const doubles &c, const complex *z, std::size_t n) {
  double largest = 0;
  for (std::size_t i = 0; i < n; ++i) largest = std::max(largest, backward_error(c, z[i]));
  return largest;
}

double ours(const doubles &c) {
  dsp_vec v;
  dsp_init(&v);
  doubles copy = c;
  const dsp_vec given = borrow(copy);
  if (dsp_copy(&v, &given) != 0 || dspi_proots(&v) != 0) return std::nan("");
  const double error = largest_error(c, reinterpret_cast<const complex *>(v.data), static_cast<std::size_t>(v.length));
  dsp_destroy(&v);
  return error;
}

double theirs([[maybe_unused]] const doubles &c) {
#ifdef HAVE_GSL
  std::vector<complex> z(c.size() - 1);
  gsl_poly_complex_workspace *work = gsl_poly_complex_workspace_alloc(c.size());
  gsl_poly_complex_solve(c.data(), c.size(), work, reinterpret_cast<double *>(z.data()));
  gsl_poly_complex_workspace_free(work);
  return largest_error(c, z.data(), z.size());
#else
  return std::nan("");
#endif
}

doubles times(const doubles &c, double zero) {
  doubles product(c.size() + 1);
  for (std::size_t k = 0; k < c.size(); ++k) {
    product[k + 1] += c[k];
    product[k] -= zero * c[k];
  }
  return product;
}

void measure(const std::string &name, int rounds, const std::function<doubles()> &make) {
  double largest = 0, gsl = 0;
  for (int i = 0; i < rounds; ++i) {
    const doubles c = make();
    largest = std::max(largest, ours(c));
    gsl = std::max(gsl, theirs(c));
  }
  row({name, figure(largest), figure(gsl)});
}

doubles random_coefficients(std::size_t degree, double decades) {
  doubles c(degree + 1);
  for (double &x : c) x = normal() * std::pow(10.0, std::uniform_real_distribution<double>(-decades, decades)(engine));
  return c;
}

doubles with_zeros(int n, const std::function<double(int)> &zero) {
  doubles c = {1.0};
  for (int i = 0; i < n; ++i) c = times(c, zero(i));
  return c;
}

void zeros_of_polynomials() {
  table({"largest backward error of a zero, in eps", "ours", "GSL"});
  for (const std::size_t degree : {10u, 50u, 200u})
    measure("random coefficients, degree " + std::to_string(degree), 20,
            [&] { return random_coefficients(degree, 0); });
  measure("degree 30, over 40 decades", 20, [] { return random_coefficients(30, 20); });
  measure("zeros 1 to 20", 1, [] { return with_zeros(20, [](int i) { return i + 1.0; }); });
  measure("ten random zeros, each twice", 20, [] {
    double zero = 0;
    return with_zeros(20, [&](int i) { return i % 2 == 0 ? zero = normal() : zero; });
  });
}

double error_of_product(std::size_t n) {
  doubles zeros(n), room(n + 1);
  std::vector<wide> exact = {1};
  for (std::size_t i = 0; i < n; ++i) {
    room[i] = zeros[i] = normal();
    exact.insert(exact.begin(), 0);
    for (std::size_t k = 0; k < i + 1; ++k) exact[k] -= zeros[i] * exact[k + 1];
  }
  dsp_vec v = borrow(room);
  v.length = static_cast<int32_t>(n);
  v.capacity = static_cast<int32_t>(room.size());
  if (dspi_pztoc(&v) != 0) return std::nan("");
  double largest = 0;
  for (std::size_t k = 0; k <= n; ++k) largest = std::max(largest, relative(v.data[k], exact[k]));
  return largest;
}

dsp_complex on_circle(wide angle, double radius) {
  return {static_cast<double>(2 + radius * std::cos(angle)), static_cast<double>(radius * std::sin(angle) - 1)};
}

double error_of_radius(double arc_in_degrees) {
  const wide step = arc_in_degrees * pi / 180 / 200;
  std::vector<dsp_complex> z;
  for (int i = 0; i <= 200; ++i) z.push_back(on_circle(i * step, 3.0));
  dsp_complex centre;
  double radius;
  if (vfpd_CircleFit(z.data(), 0, 201, &centre, &radius, nullptr) != 0) return std::nan("");
  return relative(radius, 3);
}

double error_of_arcs(double turn) {
  doubles x;
  std::vector<dsp_complex> z;
  for (int i = 0; i <= 20; ++i) x.push_back(i), z.push_back(on_circle(static_cast<wide>(turn) * i, 1.0));
  double largest = 0;
  for (double at = 0; at < 20; at += 0.0625) {
    dsp_complex value;
    if (CircularInterpolation(x.data(), z.data(), 21, &at, &value, 1) != 0) return std::nan("");
    const dsp_complex exact = on_circle(static_cast<wide>(turn) * at, 1.0);
    largest = std::max(largest, std::hypot(value.re - exact.re, value.im - exact.im));
  }
  return largest / eps;
}

}  // namespace

void zeros() {
  heading(
      "Polynomials, circles and arcs",
      "A backward error is |p(z)| over the sum of the moduli of the terms: as little, relatively, the coefficients "
      "would have to change for z to be a zero. Circles have radius 3, arcs radius 1, both a centre of modulus 2.2.");
  zeros_of_polynomials();
  table({"coefficients from so many random zeros", "ours"});
  for (const std::size_t n : {10u, 30u}) row({std::to_string(n), figure(error_of_product(n))});
  table({"radius of a circle through 201 points, exact but for rounding", "ours"});
  for (const double degrees : {360.0, 90.0, 5.0})
    row({figure(degrees) + " degrees of it", figure(error_of_radius(degrees))});
  table({"between points of a circle, of its radius", "ours"});
  for (const double turn : {0.01, 1.0, 3.0})
    row({figure(turn) + " rad from point to point", figure(error_of_arcs(turn))});
  held_by(
      "`Zeros.HaveBackwardErrorsOfRounding`, `Coefficients.AreTheProductOfTheZeros`, "
      "`CircleFit.IsTheLeastSquaresSolution`, `Arcs.ReproduceReflections`");
}

}  // namespace accuracy
