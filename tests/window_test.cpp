// The window catalogue, the generators and their cache.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>

#include "dsp/dsp.h"
#include "tests/support/emulated.h"
#include "tests/support/heap.h"
#include "tests/support/record.h"
#include "tests/support/wide.h"

namespace {

using namespace support;
using sizes = std::initializer_list<std::size_t>;

const wide pi = wide_pi;
const double eps = 0x1p-52;
const double inf = std::numeric_limits<double>::infinity();

using window = std::vector<wide>;

const int32_t scales[] = {DSP_WND_AMPLITUDE, DSP_WND_POWER};

// What a routine makes of n ones.
template <class... P, class... A>
reals weights(std::size_t n, int32_t (*apply)(dsp_vec *, P...), A... others) {
  record v(reals(n, 1.0));
  EXPECT_EQ(apply(&v, others...), 0);
  return doubles_of(v);
}

reals catalogued(int32_t type, int32_t flags, std::size_t n, double param = 0.0) {
  return weights(n, dspi_window2, type, flags | DSP_WND_NO_SWAP, param);
}

// What a scale makes 1: the mean, or the root of the mean square.
wide size_of(const reals &w, int32_t scale) {
  const bool power = scale == DSP_WND_POWER;
  wide sum = 0;
  for (const double x : w) sum += (power ? x : wide(1)) * x;
  return power ? sqrt(sum / static_cast<wide>(w.size())) : sum / static_cast<wide>(w.size());
}

double bandwidth_of(const reals &w) {
  const wide ratio = size_of(w, DSP_WND_POWER) / size_of(w, DSP_WND_AMPLITUDE);
  return static_cast<double>(ratio * ratio);
}

// Within 4 epsilons of the peak.
void expect_near(const reals &w, const window &expected) {
  ASSERT_EQ(w.size(), expected.size());
  for (std::size_t i = 0; i < w.size(); ++i)
    ASSERT_LE(abs(w[i] - expected[i]), 4 * eps) << i << ": " << w[i] << " for " << double(expected[i]);
}

// The definition of a symmetric shape: value(d, span) at each sample.
template <class Value>
window shaped(std::size_t n, bool symmetric, const Value &value) {
  window w(n);
  const wide length = static_cast<wide>(n);
  for (std::size_t i = 0; i < n; ++i) {
    const wide centre = symmetric ? (length - 1) / 2 : floor(length / 2);
    w[i] = n == 1 ? value(0, 1) : value(abs(static_cast<wide>(i) - centre), symmetric ? length - 1 : length);
  }
  return w;
}

wide cosines(const reals &c, wide turns) {
  wide sum = 0;
  for (std::size_t k = 0; k < c.size(); ++k) {
    const wide part = static_cast<wide>(k) * turns;
    sum += c[k] * cos(2 * pi * (part - floor(part)));
  }
  return sum;
}

std::vector<std::size_t> lengths() {
  std::vector<std::size_t> n = {1, 2, 3, 4, 5, 6, 7, 8, 13, 16, 63, 64, 65, 127, 128, 129, 130, 131, 500};
  if (!emulated) n.insert(n.end(), {1023, 4096, 8200});
  return n;
}

void check_name(const std::string &name, int32_t expected) {
  for (std::string form : {name, "DSP_WINDOW_" + name})
    for (const bool lower : {false, true}) {
      if (lower) std::transform(form.begin(), form.end(), form.begin(), [](int c) { return std::tolower(c); });
      dsp_window_type type = 77;
      EXPECT_EQ(dsp_window_from_str(form.c_str(), &type), expected < 0 ? -1 : 0) << form;
      EXPECT_EQ(type, std::max(expected, 0)) << form;
    }
}

TEST(Catalogue, KnowsNamesInAnyCase) {
  for (const char *name : {"HANNING", "HAN", "", "DSP_WINDOW_DSP_WINDOW_HANN", "HANN "}) check_name(name, -1);
  dsp_window_type type = 77;
  EXPECT_EQ(dsp_window_from_str(nullptr, &type), -1);
  EXPECT_EQ(dsp_window_from_str("hann", nullptr), -1);
  for (type = -1; type < 26; ++type)
    for (const int32_t size : {0, 4}) {
      char text[4] = "abc";
      EXPECT_EQ(dsp_window_to_str(type, text, size), -1);
      EXPECT_STREQ(text, size == 0 ? "abc" : "");
      EXPECT_EQ(dsp_window_to_str(type, nullptr, size), -1);
    }
}

// Side lobe, noise bandwidth, width, main lobe and ripple, from the continuous transform on a grid of 1/64 bin.
reals measure(int32_t type) {
  const std::size_t n = 1024;
  const int32_t grid = 64;
  const reals w = catalogued(type, DSP_WND_RAW, n);
  record v(w);
  EXPECT_EQ(dspi_zpad(&v, static_cast<int32_t>(n) * grid), 0);
  EXPECT_EQ(dspi_rfft(&v), 0);
  EXPECT_EQ(dspi_mag(&v), 0);
  reals level;
  for (int i = 0; i < 100 * grid; ++i) level.push_back(20 * std::log10(v.data[i] / v.data[0] + 1e-300));
  std::size_t i = 0, foot;
  const double half = -10 * std::log10(2.0);
  while (level[i] > half) ++i;
  for (foot = i; level[foot + 1] < level[foot];) ++foot;
  double ripple = 0;
  for (std::size_t k = 0; k <= grid / 2; ++k) ripple = std::max(ripple, std::abs(level[k]));
  const double crossing = static_cast<double>(i) - (level[i] - half) / (level[i] - level[i - 1]);
  return {*std::max_element(level.begin() + static_cast<std::ptrdiff_t>(foot), level.end()), bandwidth_of(w),
          2 * crossing / grid, 2 * static_cast<double>(foot) / grid, ripple};
}

TEST(Catalogue, HeadersNamesAndFiguresAreTrue) {
  const std::string here = __FILE__;
  std::ifstream header(here.substr(0, here.rfind("tests")) + "dsp/dsp.h");
  if (!header) GTEST_SKIP() << "no sources here";
  const double limits[] = {0.06, 6e-5, 6e-4, 6e-3, 6e-4};
  int names = 0, rows = 0;
  for (std::string line; std::getline(header, line);) {
    int type = -1;
    char name[32];
    double f[5];
    if (std::sscanf(line.c_str(), " DSP_WINDOW_%31s = %d", name, &type) == 2) check_name(name, type), ++names;
    if (line.compare(0, 6, " *    ") != 0 || line.size() < 40 || std::sscanf(line.c_str(), " * %d", &type) != 1)
      continue;
    if (std::sscanf(line.c_str() + 36, "%lf %lf %lf %lf %lf", f, f + 1, f + 2, f + 3, f + 4) != 5) continue;
    EXPECT_EQ(type, rows++);
    const reals measured = measure(type);
    for (std::size_t k = 0; k < 5; ++k) EXPECT_NEAR(measured[k], f[k], limits[k]) << type << " " << k;
  }
  EXPECT_EQ(names, 40);
  EXPECT_EQ(rows, 25);
}

TEST(Catalogue, ScalesOfOneTypeAreOneWindow) {
  for (int32_t type = 0; type <= 24; ++type)
    for (int32_t n = 1; n <= 40; ++n) {
      SCOPED_TRACE(testing::Message() << "type " << type << " n " << n);
      const bool flat_top = type >= 8 && type <= 13;
      const double target = flat_top ? catalogued(type, DSP_WND_AMPLITUDE, 1)[0] : 1.0;
      const reals raw = catalogued(type, DSP_WND_RAW, static_cast<std::size_t>(n));
      EXPECT_NEAR(raw.data()[n / 2], 1.0, 2e-15);
      double factor = 0, enbw = 0;
      for (const int32_t scale : scales) {
        ASSERT_EQ(dsp_window_scale(&factor, type, scale, n), 0);
        const double goal = scale == DSP_WND_POWER ? 1.0 : target;
        EXPECT_NEAR(static_cast<double>(size_of(raw, scale)) * factor, goal, 1e-14);
        const reals scaled = catalogued(type, scale, static_cast<std::size_t>(n));
        for (int32_t i = 0; i < n; ++i) EXPECT_NEAR(scaled.data()[i], raw.data()[i] * factor, 3e-14);
      }
      ASSERT_EQ(dsp_window_enbw(&enbw, type, n), 0);
      EXPECT_NEAR(enbw / (target * target * bandwidth_of(raw)), 1.0, 4e-14);
    }
}

TEST(Generators, SumsOfCosinesToTheLastDigits) {
  const reals sets[] = {{}, {0.5}, {0.5, 0.5}, {0.355768, 0.487396, 0.144232, 0.012604}, random_reals(25, 1)};
  for (const reals &c : sets)
    for (const std::size_t n : lengths()) {
      SCOPED_TRACE(testing::Message() << c.size() << " terms, n " << n);
      const record coefficients(c);
      wide size = 0;
      for (const double x : c) size += std::abs(x);
      const reals w = weights(n, dspi_window_cos, &coefficients);
      const window expected = shaped(n, false, [&](wide d, wide span) { return cosines(c, d / span); });
      for (std::size_t i = 0; i < n; ++i) EXPECT_LE(abs(w[i] - expected[i]), 3 * eps * size) << i;
      if (c.size() != 4) continue;
      expect_near(catalogued(DSP_WINDOW_BLACKMAN_HARRIS4, DSP_WND_RAW, n), expected);
      const reals taps = weights(n, dspi_window_fir, DSP_WINDOW_LOWLEAK);
      const wide middle = (static_cast<wide>(n) - 1) / 2;
      for (std::size_t i = 0; i < n; ++i)
        EXPECT_LE(abs(taps[i] - cosines(c, abs(static_cast<wide>(i) - middle) / static_cast<wide>(n))), 4 * eps);
    }
}

wide bessel_i0(wide x) {
  wide sum = 0, term = 1;
  for (int k = 1; term > sum * 1e-21; ++k) {
    sum += term;
    term *= x / (2 * k) * (x / (2 * k));
  }
  return sum;
}

TEST(Generators, ParametricShapesToTheLastDigits) {
  for (const std::size_t n : lengths())
    for (const int32_t form : {0, static_cast<int32_t>(DSP_WND_SYMMETRIC)}) {
      SCOPED_TRACE(testing::Message() << "n " << n << " form " << form);
      const auto check_scales = [&](bool empty, auto apply, auto... others) {
        for (const int32_t scale : scales) {
          const wide size = size_of(weights(n, apply, others..., scale | form), scale);
          EXPECT_NEAR(static_cast<double>(size), empty ? 0.0 : 1.0, 1e-15);
        }
      };
      const auto check = [&](const auto &value, auto apply, auto... others) {
        const reals raw = weights(n, apply, others..., DSP_WND_RAW | DSP_WND_NO_SWAP | form);
        expect_near(raw, shaped(n, form != 0, value));
        check_scales(size_of(raw, DSP_WND_POWER) == 0, apply, others...);
      };
      for (const double beta : {0.0, 1.0, -8.5, 15.0, 19.99, 20.01, 100.0}) {
        const wide centre = n % 2 == 0 && form != 0 ? 1 / (static_cast<wide>(n) - 1) : 0;
        const auto i0 = [&](wide t) { return bessel_i0(beta * sqrt(1 - t * t)); };
        check([&](wide d, wide span) { return i0(std::min(2 * d / span, wide(1))) / i0(centre); }, dspi_window_kaiser,
              beta);
      }
      check_scales(false, dspi_window_kaiser, 1e3);
      for (const double sigma : {0.15, 1.0, -0.4})
        check([&](wide d, wide span) { return exp(-0.5 * (d / (sigma * span)) * (d / (sigma * span))); },
              dspi_window_gauss, sigma);
      check([](wide d, wide) { return d < 1 ? wide(1) : wide(0); }, dspi_window_gauss, 0.0);
      for (const double lobe : {0.0, 1.0, 3.0, 20.0}) {
        const auto sinc = [](wide x) { return x == 0 ? wide(1) : sin(x) / x; };
        check([&](wide d, wide span) { return d == 0 ? wide(0.75) : sinc(2 * d / span * lobe); }, dspi_window_sinc,
              lobe, 0.75);
      }
      for (const double alpha : {0.0, 0.25, 0.6, 1.0}) {
        const auto value = [&](wide d, wide span) {
          const wide flat = (1 - wide(alpha)) * span / 2;
          return d <= flat ? wide(1) : (1 + cos(2 * pi * (d - flat) / (alpha * span))) / 2;
        };
        check(value, dspi_window_tukey, alpha);
      }
    }
  EXPECT_EQ(weights(1, dspi_window_sinc, 3.0, 0.0, 4), reals{1.0});
}

// The coefficients of a cosine sum, from the window of 64 samples.
reals coefficients_of(int32_t type) {
  const reals raw = catalogued(type, DSP_WND_RAW, 64);
  reals c(8, 0.0);
  for (unsigned k = 0; k < 8; ++k)
    for (unsigned i = 0; i < 64; ++i)
      c[k] += raw[i] * std::cos(2 * static_cast<double>(pi) * (k * (i + 32) % 64) / 64) * (k == 0 ? 1 : 2) / 64;
  return c;
}

TEST(Generators, ActivePartOfASignal) {
  for (const int32_t type : {2, 6, 11}) {
    const reals c = coefficients_of(type);
    for (const int n : {1, 2, 9, 16, 301, 1000})
      for (const double active : {0.4, 1.0, 2.0, 5.0, 6.5, 8.0, 9.0, 16.0, 20.0, 300.0, 999.5, 4000.0, inf}) {
        SCOPED_TRACE(testing::Message() << "type " << type << " n " << n << " active " << active);
        window expected(static_cast<std::size_t>(n), 0);
        wide sum = 0, squares = 0;
        for (int i = 0; i < n; ++i) {
          const int d = i - n / 2;
          const bool beyond = std::abs(d) > std::floor(active / 2) || 2 * d == active || (n % 2 == 0 && i == 0);
          wide &w = expected.data()[i];
          if (active >= n || !beyond) w = cosines(c, wide(std::abs(d)) / active);
          sum += w, squares += w * w;
        }
        for (const int32_t scale : {0, 1, 2}) {
          const wide goal = type == 11 ? 0.999820406 : 1;
          const auto factor = static_cast<double>(scale == 0 ? goal * n / sum : scale == 1 ? sqrt(n / squares) : 1);
          const reals w = catalogued(type, scale | DSP_WND_ACTIVE, expected.size(), active);
          for (int i = 0; i < n; ++i)
            EXPECT_NEAR(w.data()[i] / factor, static_cast<double>(expected.data()[i]), 1e-13) << i;
          double told = 0;
          EXPECT_EQ(dsp_window2_scale(&told, type, scale | DSP_WND_ACTIVE, n, active), 0);
          EXPECT_NEAR(told / factor, 1.0, 1e-13);
        }
      }
  }
  EXPECT_EQ(catalogued(0, DSP_WND_ACTIVE | DSP_WND_RAW, 4, 2.5), (reals{1, 1, 1, 0}));
  EXPECT_EQ(catalogued(0, DSP_WND_ACTIVE, 4, 2.0), (reals{2, 2, 0, 0}));
  EXPECT_EQ(catalogued(0, DSP_WND_ACTIVE, 3, 1e-9), (reals{3, 0, 0}));
  EXPECT_EQ(catalogued(0, DSP_WND_ACTIVE, 3, inf), (reals{1, 1, 1}));
}

TEST(Applying, SwapsHalvesAndKeepsTheRest) {
  for (const bool is_complex : {false, true})
    for (const std::size_t n : sizes{0, 1, 2, 5, 8, 33, 100}) {
      const record in = random_signal(n, is_complex, 3, 0.25);
      for (const int32_t type : {0, 2, 17}) {
        record plain(in), owner(in);
        ASSERT_EQ(dspi_window(&plain, type, DSP_WND_NO_SWAP), 0);
        if (n > 0) {
          const reals w = catalogued(type, 0, n);
          for (std::size_t i = 0; i < n; ++i) EXPECT_EQ(complexes_of(plain)[i], complexes_of(in)[i] * w[i]);
        }
        dspi_swap_halves2(&plain);
        dsp_vec swapped = view(owner);
        ASSERT_EQ(dspi_window(&swapped, type, DSP_WND_SWAP_UNIFORM), 0);
        EXPECT_EQ(swapped.data, owner.data) << "in the caller's memory";
        EXPECT_TRUE(same(owner, plain));
      }
    }
  for (const std::size_t n : sizes{4, 5, 100}) {
    const reals taps = weights(n, dspi_window_fir, DSP_WINDOW_KAISER80);
    EXPECT_EQ(taps, reals(taps.rbegin(), taps.rend()));
    EXPECT_GT(taps[0], 0.0);
    EXPECT_EQ(taps == catalogued(DSP_WINDOW_KAISER80, DSP_WND_RAW, n), n % 2 != 0);
  }
  EXPECT_EQ(weights(4, dspi_window_fir, DSP_WINDOW_TRIANGULAR), (reals{0.25, 0.75, 0.75, 0.25}));
}

TEST(Applying, RefusesWhatDoesNotExist) {
  const record v(reals{1, 2, 3}), complex_coefficients(complexes{{1, 0}});
  record w(v), empty;
  double s = 0;
  for (int32_t type = -1; type <= 25; ++type)
    for (int32_t flags = 0; flags < 16; ++flags)
      for (const double param : {2.0, 0.0, -1.0, std::nan("")}) {
        SCOPED_TRACE(testing::Message() << type << " " << flags << " " << param);
        const bool known = type >= 0 && type <= 24, sum = known && type < 14 && type != 1, some = sum && param > 0;
        const bool symmetric = (flags & DSP_WND_SYMMETRIC) != 0, active = (flags & DSP_WND_ACTIVE) != 0;
        const bool fits = active ? some && !symmetric : type == 0 || (known && !(symmetric && (sum || type == 1)));
        const bool good = (flags & 3) != 3 && fits, raw = (flags & 3) == DSP_WND_RAW;
        w = v;
        EXPECT_EQ(dspi_window2(&w, type, flags, param), good ? 0 : -1);
        EXPECT_TRUE(good || same(w, v));
        // A scale asks for a form only where it depends on it.
        const bool has_scale = raw || ((flags & 3) != 3 && (active ? some && !symmetric : known));
        s = 7;
        EXPECT_EQ(dsp_window2_scale(&s, type, flags, 9, param), has_scale ? 0 : -1);
        EXPECT_EQ(s == 1.0, raw || (type == 0 && has_scale && !active));
        EXPECT_EQ(dsp_window_scale(&s, type, flags, 9), has_scale && !active ? 0 : -1);
        EXPECT_EQ(dsp_window_enbw(&s, type, 9), known ? 0 : -1);
        EXPECT_EQ(dsp_window2_enbw(&s, type, 9, param), some ? 0 : -1);
        EXPECT_EQ(dsp_window2_scale(&s, type, flags, 0, param), 0);
        EXPECT_EQ(s, 1.0);
      }
  EXPECT_EQ(dsp_window_scale(&s, 24, DSP_WND_SYMMETRIC, 2), 0);
  EXPECT_EQ(s, 0.0) << "of nothing but zeros";
  EXPECT_EQ(dsp_window_enbw(nullptr, 2, 9), -1);
  EXPECT_EQ(dsp_window2_scale(nullptr, 2, 0, 9, 3), -1);
  EXPECT_EQ(dspi_window(&w, 2, DSP_WND_ACTIVE), -1);
  for (const int32_t flags : {3, 8}) {
    for (const auto run : {dspi_window_gauss, dspi_window_kaiser, dspi_window_tukey}) EXPECT_EQ(run(&w, 1, flags), -1);
    EXPECT_EQ(dspi_window_sinc(&w, 1, 1, flags), -1);
  }
  EXPECT_EQ(dspi_window_cos(&w, &complex_coefficients), -1);
  EXPECT_EQ(dspi_window_fir(&w, 25), -1);
  EXPECT_EQ(dspi_window(&empty, 2, 0), 0);
  EXPECT_EQ(dspi_window_kaiser(&empty, 2, 0), 0);
}

TEST(Cache, KeepsTheLastSixteen) {
  dsp_free_internal();
  const auto requests = [](int32_t i) {
    record v(reals(static_cast<std::size_t>(100 - i), 1.0));
    const long before = heap_requests();
    EXPECT_EQ(dspi_window(&v, DSP_WINDOW_HANN, 0), 0);
    return heap_requests() - before;
  };
  EXPECT_EQ(requests(0), 2);  // the slots and the first window
  for (int32_t i = 1; i < 16; ++i) EXPECT_EQ(requests(i), 1);
  for (int32_t i = 0; i < 16; ++i) EXPECT_EQ(requests(i), 0);
  EXPECT_EQ(requests(16), 0) << "fits into the oldest one's memory";
  for (int32_t i = 1; i <= 16; ++i) EXPECT_EQ(requests(i), 0);
  EXPECT_EQ(requests(0), 1) << "the oldest, replaced";
  EXPECT_EQ(requests(2), 0);
  const reals flags_differ = catalogued(DSP_WINDOW_HANN, DSP_WND_RAW, 99);
  EXPECT_NE(flags_differ, catalogued(DSP_WINDOW_HANN, DSP_WND_POWER, 99));
  EXPECT_NE(flags_differ, catalogued(DSP_WINDOW_HANN, DSP_WND_RAW | DSP_WND_ACTIVE, 99, 50.0));
  EXPECT_EQ(flags_differ, catalogued(DSP_WINDOW_HANN, DSP_WND_RAW | DSP_WND_ACTIVE, 99, 99.0));
  const long live = heap_live();
  dsp_free_internal();
  EXPECT_EQ(heap_live(), live - 17);
}

}  // namespace
