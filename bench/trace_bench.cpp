// Trace helpers beside the plain loops a program would write instead.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "dsp/dsp.h"

namespace {

constexpr double pi = 3.14159265358979323846;

struct traces {
  explicit traces(int32_t points) : n(points), in(size()), out(size()), z(size()), z_out(size()), integers(size()) {
    std::mt19937_64 engine(1);
    std::uniform_real_distribution<double> part(-1.0, 1.0);
    for (double &x : in) x = part(engine);
    for (std::size_t i = 0; i < size(); ++i) z[i] = {0.6 * part(engine), 0.6 * part(engine)};
  }
  std::size_t size() const { return static_cast<std::size_t>(n); }

  int32_t n;
  std::vector<double> in, out;
  std::vector<dsp_complex> z, z_out;
  std::vector<int32_t> integers;
  int32_t place = 0;
};

double power(const dsp_complex &z) { return z.re * z.re + z.im * z.im; }

// Scaling by 1 keeps the values from growing; the compiler must not know.
double one = 1.0;

void plain_scale(traces &t) {
  double *x = t.in.data();
  for (int32_t i = 0; i < t.n; ++i) x[i] *= one;
}

void plain_to_int(traces &t) {
  const double k = 255.0 / 2.0, *in = t.in.data();
  for (int32_t i = 0; i < t.n; ++i) {
    const double v = k * (in[i] + 1.0);
    t.integers[static_cast<std::size_t>(i)] =
        std::isnan(v) ? 0 : static_cast<int32_t>(std::clamp(v, -2147483648.0, 2147483647.0));
  }
}

void plain_to_fp(traces &t) {
  const double *in = t.in.data();
  double *out = t.out.data();
  for (int32_t i = 0; i < t.n; ++i) out[i] = 3.0 * (in[i] + 1.0) + 5.0;
}

void plain_max(traces &t) {
  int32_t best = 0;
  for (int32_t i = 1; i < t.n; ++i)
    if (t.in[static_cast<std::size_t>(i)] > t.in[static_cast<std::size_t>(best)]) best = i;
  t.place = best;
}

void plain_line(traces &t) {
  double *out = t.out.data();
  const double step = 9.0 / (t.n - 1);
  for (int32_t i = 0; i < t.n; ++i) out[i] = 1.0 + step * i;
}

void plain_log(traces &t) {
  const double step = 3.0 / (t.n - 1);
  for (int32_t i = 0; i < t.n; ++i) t.out[static_cast<std::size_t>(i)] = std::pow(10.0, 1.0 + step * i);
}

template <class Window>
void plain_smooth(int32_t n, Window window) {
  for (int32_t i = 0; i < n; ++i) window(i, std::min({10, i, n - 1 - i}));
}

void plain_smooth_real(traces &t) {
  const double *in = t.in.data();
  double sum = 0.0;
  int32_t last = -1;
  plain_smooth(t.n, [&](int32_t i, int32_t h) {
    if (h == last) {
      sum = sum - in[i - h - 1] + in[i + h];
    } else {
      sum = 0.0;
      for (int32_t j = i - h; j <= i + h; ++j) sum += in[j];
    }
    last = h;
    t.out[static_cast<std::size_t>(i)] = sum / (2 * h + 1);
  });
}

void plain_smooth_phase(traces &t) {
  const double *in = t.in.data();
  plain_smooth(t.n, [&](int32_t i, int32_t h) {
    double sum = 0.0;
    int turns = 0;
    for (int32_t j = i - h; j <= i + h; ++j) {
      if (j > 0 && in[j] - in[j - 1] < -pi) ++turns;
      if (j > 0 && in[j] - in[j - 1] > pi) --turns;
      sum += in[j] + turns * 2.0 * pi;
    }
    t.out[static_cast<std::size_t>(i)] = std::remainder(sum / (2 * h + 1), 2.0 * pi);
  });
}

void plain_smooth_complex(traces &t) {
  const auto magnitude = [&](int32_t j) {
    return std::hypot(t.z[static_cast<std::size_t>(j)].re, t.z[static_cast<std::size_t>(j)].im);
  };
  const auto phase = [&](int32_t j) {
    return std::atan2(t.z[static_cast<std::size_t>(j)].im, t.z[static_cast<std::size_t>(j)].re);
  };
  double m = 0.0, p = 0.0;
  int32_t last = -1;
  plain_smooth(t.n, [&](int32_t i, int32_t h) {
    if (h == last) {
      m += magnitude(i + h) - magnitude(i - h - 1);
      p += phase(i + h) - phase(i - h - 1);
    } else {
      m = p = 0.0;
      for (int32_t j = i - h; j <= i + h; ++j) m += magnitude(j), p += phase(j);
    }
    last = h;
    const int32_t w = 2 * h + 1;
    t.z_out[static_cast<std::size_t>(i)] = {m / w * std::cos(p / w), m / w * std::sin(p / w)};
  });
}

template <class Format>
void plain_format(traces &t, Format format) {
  for (std::size_t i = 0; i < t.size(); ++i) t.out[i] = format(t.z[i]);
}

void plain_unwrap(traces &t) {
  double turns = 0.0, before = 0.0;
  for (std::size_t i = 0; i < t.size(); ++i) {
    double phase = std::atan2(t.z[i].im, t.z[i].re) + turns * 2.0 * pi;
    if (i > 0 && phase - before < -pi) phase += 2.0 * pi, turns += 1.0;
    if (i > 0 && phase - before > pi) phase -= 2.0 * pi, turns -= 1.0;
    t.out[i] = before = phase;
  }
}

struct work {
  const char *name;
  void (*ours)(traces &);
  void (*plain)(traces &);
};

const work works[] = {
    {"scale", [](traces &t) { vfpdbMul2(one, t.in.data(), t.n); }, plain_scale},
    {"scale_to_int", [](traces &t) { vfpdb_ScaleToInt2(t.in.data(), t.n, -1.0, 1.0, t.integers.data(), 0, 255); },
     plain_to_int},
    {"scale_to_fp", [](traces &t) { vfpdb_ScaleToFP(t.in.data(), t.n, -1.0, 1.0, t.out.data(), 5.0, 11.0); },
     plain_to_fp},
    {"find_max", [](traces &t) { t.place = vfpd_FindMax(t.in.data(), 0, t.n); }, plain_max},
    {"expand_linear", [](traces &t) { vfpd_ExpandLinear(t.out.data(), t.n, 1.0, 10.0); }, plain_line},
    {"expand_log", [](traces &t) { vfpd_ExpandLog(t.out.data(), t.n, 10.0, 1e4); }, plain_log},
    {"smooth_21", [](traces &t) { vfpd_Smooth(t.in.data(), t.out.data(), t.n, 0, t.n, 21, 0); }, plain_smooth_real},
    {"smooth_phase_21", [](traces &t) { vfpd_Smooth(t.in.data(), t.out.data(), t.n, 0, t.n, 21, 1); },
     plain_smooth_phase},
    {"smooth_complex_21", [](traces &t) { vfpd_SmoothCpx(t.z.data(), t.z_out.data(), t.n, 0, t.n, 21); },
     plain_smooth_complex},
    {"format_db", [](traces &t) { vfpd_FormatBuffer(DSP_FORMAT_LEVEL, t.z.data(), t.out.data(), 0, t.n); },
     [](traces &t) { plain_format(t, [](const dsp_complex &z) { return 10.0 * std::log10(power(z)); }); }},
    {"format_magnitude", [](traces &t) { vfpd_FormatBuffer(DSP_FORMAT_MAGNITUDE, t.z.data(), t.out.data(), 0, t.n); },
     [](traces &t) { plain_format(t, [](const dsp_complex &z) { return std::sqrt(power(z)); }); }},
    {"format_phase", [](traces &t) { vfpd_FormatBuffer(DSP_FORMAT_PHASE, t.z.data(), t.out.data(), 0, t.n); },
     [](traces &t) { plain_format(t, [](const dsp_complex &z) { return std::atan2(z.im, z.re) * 180.0 / pi; }); }},
    {"format_swr", [](traces &t) { vfpd_FormatBuffer(DSP_FORMAT_SWR, t.z.data(), t.out.data(), 0, t.n); },
     [](traces &t) {
       plain_format(t, [](const dsp_complex &z) {
         const double r = std::sqrt(power(z));
         return r > 0.999998 ? 1e6 : (1.0 + r) / (1.0 - r);
       });
     }},
    {"unwrap", [](traces &t) { vfpd_UnwrapPhase(t.z.data(), 0, t.n, t.out.data()); }, plain_unwrap},
};

void run(benchmark::State &state, void (*routine)(traces &), int32_t n) {
  traces t(n);
  for (auto _ : state) {
    routine(t);
    benchmark::ClobberMemory();
    benchmark::DoNotOptimize(t.place);
  }
}

const int registered = [] {
  benchmark::DoNotOptimize(one);
  for (const work &w : works)
    for (const int32_t n : {1601, 100000}) {
      const std::string name = std::string(w.name) + "/" + std::to_string(n) + "/";
      benchmark::RegisterBenchmark((name + "dsp").c_str(), run, w.ours, n);
      benchmark::RegisterBenchmark((name + "loop").c_str(), run, w.plain, n);
    }
  return 0;
}();

}  // namespace
