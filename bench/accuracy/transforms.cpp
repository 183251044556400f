// Transforms in each instruction set, beside FFTW.
#include "bench/accuracy/fft_accuracy.h"
#include "bench/accuracy/report.h"
#include "dsp/math/angle.h"
#include "dsp/simd/isa.h"

namespace accuracy {
namespace {

namespace fft = fft_accuracy;

const struct {
  const char *name;
  dsp::isa set;
} sets[] = {{"baseline", dsp::isa::baseline}, {"AVX2", dsp::isa::avx2}, {"AVX-512", dsp::isa::avx512}};

// In units of 1e-16; not a number where the processor lacks the set.
double ours_with(dsp::isa set, const fft::kind &what, std::size_t n, std::size_t draws) {
  const dsp::isa best = dsp::active_isa();
  const double error = dsp::force_isa(set) ? 1e16 * fft::ours(what, n, draws) : std::nan("");
  dsp::force_isa(best);
  return error;
}

void errors_at(const fft::kind &what, const std::vector<std::size_t> &lengths) {
  cells head = {std::string(what.name) + ", n"};
  for (const auto &s : sets) head.emplace_back(s.name);
  head.emplace_back("FFTW");
  table(head);
  for (const std::size_t n : lengths) {
    const std::size_t draws = n < 4096 ? (std::size_t{1} << 15) / n : 8 * 4096 / n + 1;
    cells line = {std::to_string(n)};
    for (const auto &s : sets) line.push_back(figure(ours_with(s.set, what, n, draws)));
    line.push_back(figure(1e16 * fft::fftw(what, n, draws)));
    row(line);
  }
}

double share_of_bound(const fft::kind &what, std::size_t first, std::size_t last, std::size_t draws) {
  double worst = 0;
  for (std::size_t n = first; n <= last; ++n) worst = std::max(worst, fft::ours(what, n, draws) / fft::bound(n));
  return worst;
}

}  // namespace

void transforms() {
  heading("Transforms of powers of two",
          "Relative error in the L2 norm, in units of 1e-16 (0.45 eps), on noise; FFTW with its measured plans.");
  for (const fft::kind *what : {&fft::complex, &fft::complex_inverse, &fft::real, &fft::real_inverse, &fft::cosine})
    errors_at(*what, {16, 64, 256, 1024, 4096, 16384, 65536, 1048576});
  held_by(
      "`Transforms.AgreeWithTheDefinition`, "
      "`Transforms.CosineHilbertAnalytic`");

  heading("Transforms of lengths with small prime factors", "As above.");
  for (const fft::kind *what : {&fft::complex, &fft::complex_inverse, &fft::real, &fft::real_inverse})
    errors_at(*what, {12, 24, 60, 100, 360, 1000, 1200, 1920, 4800, 44100});

  heading(
      "Transforms of any length",
      "The worst relative error in the L2 norm over 2 eps sqrt(log2 m), m being n for powers of two, else the least "
      "one from 2n - 2 on.");
  const fft::kind *const kinds[] = {&fft::complex, &fft::complex_inverse, &fft::real,
                                    &fft::cosine,  &fft::hilbert,         &fft::analytic};
  cells head = {"n"};
  for (const fft::kind *what : kinds) head.emplace_back(what->name);
  table(head);
  const auto line = [&](const std::string &name, std::size_t first, std::size_t last, std::size_t draws) {
    cells next = {name};
    for (const fft::kind *what : kinds) next.push_back(figure(share_of_bound(*what, first, last, draws)));
    row(next);
  };
  line("2 to 300", 2, 300, 4);
  for (const std::size_t n : {1009, 4099, 10007, 16381, 32771, 65521}) line(std::to_string(n), n, n, 1);
  held_by("`Transforms.AgreeWithTheDefinition`, `Transforms.CosineHilbertAnalytic`");
}

void roots() {
  heading("Roots of unity", "The worst error of the cosines and sines that transforms read, in ulp.");
  table({"n", "error"});
  for (const std::size_t n : {1u << 4, 1u << 10, 1u << 16, 1u << 20}) {
    doubles cosines(n / 8 + 1), sines(n / 8 + 1);
    dsp::fill_octant(cosines.data(), sines.data(), static_cast<int64_t>(n));
    double worst = 0;
    for (std::size_t k = 1; k <= n / 8; ++k) {
      const wide angle = 2 * pi * static_cast<wide>(k) / static_cast<wide>(n);
      worst = std::max({worst, units(cosines[k], std::cos(angle)), units(sines[k], std::sin(angle))});
    }
    row({std::to_string(n), figure(worst)});
  }
  held_by("`Fft.RootsAreRightToTheLastBit`");
}

}  // namespace accuracy
