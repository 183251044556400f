#include "examples/support/line_fit.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace examples {
namespace {

constexpr double pi = 3.14159265358979323846;
constexpr double reach = 17.0;   // bins: lines farther away than this do not enter a fit
constexpr double fitted = 12.0;  // bins to either side of a line that its fit looks at
constexpr double judged = 8.0;   // and those whose residual tells its errors
constexpr double drift_reach = 17.0;
constexpr double least_distance = 1.5;  // of lines that can be told from each other

/** A spectrum of `n` ones about the record's middle; the window's ends are 0, so that an even record counts as one
 * that holds half of either end. */
double ones(double offset, double n) {
  const double angle = std::remainder(offset, n) * pi;
  if (std::abs(angle) < 1e-9) return 1.0;
  const double smooth = std::fmod(n, 2.0) == 0.0 ? std::cos(angle / n) : 1.0;
  return std::sin(angle) * smooth / (n * std::sin(angle / n));
}

}  // namespace

line_fit::line_fit(const dsp_vec &record) : n_(record.length) {
  signal mean;
  require(dsps_mean(&record, &mean), "compute the mean");
  require(dsp_copy(&bins_, &record), "copy the recording");
  require(dspi_offset(&bins_, -mean[0]), "remove the mean");
  require(dspi_window(&bins_, DSP_WINDOW_HANN, DSP_WND_AMPLITUDE | DSP_WND_NO_SWAP), "window the recording");
  require(dspi_window(&bins_, DSP_WINDOW_HANN, DSP_WND_AMPLITUDE), "window the recording");
  require(dspi_rdft(&bins_), "transform the recording");
}

// (1 + cos x)^2 is 1.5 + 2 cos x + 0.5 cos 2x.
double line_fit::kernel(double offset) const {
  return 1.5 * ones(offset, n_) + ones(offset - 1.0, n_) + ones(offset + 1.0, n_) +
         0.25 * (ones(offset - 2.0, n_) + ones(offset + 2.0, n_));
}

double line_fit::kernel_slope(double offset) const {
  constexpr double h = 1e-4;
  return (kernel(offset + h) - kernel(offset - h)) / (2.0 * h);
}

line_fit::range line_fit::around(double lo, double hi, double margin) const {
  return {static_cast<int32_t>(std::max(std::ceil(lo - margin), 0.0)),
          static_cast<int32_t>(std::min(std::floor(hi + margin), half_rate()))};
}

// A column holds the real parts of the rows' bins, then their imaginary parts.
column line_fit::data(const range &rows) const {
  column y;
  for (int part : {0, 1})
    for (int32_t k = rows.first; k <= rows.last; ++k) y.push_back(bins_[2 * k + part]);
  return y;
}

column line_fit::cosine(double bin, const range &rows) const {
  column x;
  for (int32_t k = rows.first; k <= rows.last; ++k) x.push_back(0.5 * (kernel(k - bin) + kernel(k + bin)));
  x.resize(2 * x.size(), 0.0);
  return x;
}

column line_fit::sine(double bin, const range &rows) const {
  column x(static_cast<std::size_t>(rows.last - rows.first + 1), 0.0);
  for (int32_t k = rows.first; k <= rows.last; ++k) x.push_back(0.5 * (kernel(k + bin) - kernel(k - bin)));
  return x;
}

column line_fit::slope_of_line(double bin, double a, double b, const range &rows) const {
  column x, odd;
  for (int32_t k = rows.first; k <= rows.last; ++k) {
    const double image = 0.5 * kernel_slope(k + bin), line = 0.5 * kernel_slope(k - bin);
    x.push_back(a * (image - line));
    odd.push_back(b * (image + line));
  }
  x.insert(x.end(), odd.begin(), odd.end());
  return x;
}

/** The line of an amplitude that grows as the square of the time from the record's middle. */
column line_fit::curvature_of_line(double bin, double a, double b, const range &rows) const {
  constexpr double h = 1e-2;
  const column low = slope_of_line(bin - h, a, b, rows);
  column x = slope_of_line(bin + h, a, b, rows);
  for (std::size_t k = 0; k < x.size(); ++k) x[k] = (x[k] - low[k]) / (2.0 * h);
  return x;
}

/** Cosine and sine of every line; before them, where a line comes close to frequency 0, offset and slope. */
std::vector<column> line_fit::model(const std::vector<harmonic> &lines, const range &rows) const {
  std::vector<column> columns;
  for (const harmonic &line : lines) {
    columns.push_back(cosine(line.bin, rows));
    columns.push_back(sine(line.bin, rows));
  }
  if (rows.first < drift_reach - fitted) {
    columns.push_back(cosine(0.0, rows));
    column ramp(static_cast<std::size_t>(rows.last - rows.first + 1), 0.0);
    for (int32_t k = rows.first; k <= rows.last; ++k) ramp.push_back(kernel_slope(k));
    columns.push_back(ramp);
  }
  return columns;
}

double line_fit::folded(double bin, int h, double *slope) const {
  const double turn = std::fmod(h * bin, n_);
  const bool mirrored = turn > half_rate();
  if (slope) *slope = mirrored ? -h : h;
  return mirrored ? n_ - turn : turn;
}

/** The tone itself, and its harmonics within reach that are lines of their own. */
std::vector<line_fit::harmonic> line_fit::neighbours(double bin, int harmonics) const {
  std::vector<harmonic> lines = {{bin, 1.0}};
  for (int h = 2; h <= harmonics; ++h) {
    harmonic line{};
    line.bin = folded(bin, h, &line.slope);
    bool is_free = std::abs(line.bin - bin) < reach && std::min(line.bin, half_rate() - line.bin) > least_distance;
    for (const harmonic &other : lines) is_free = is_free && std::abs(other.bin - line.bin) > least_distance;
    if (is_free) lines.push_back(line);
  }
  return lines;
}

/** How much of the power in the rows, which was `silent` without it, a line at `bin` takes away. */
double line_fit::explained(double bin, const range &rows, double silent) const {
  const double left = norm(least_squares(model({{bin, 1.0}}, rows), data(rows)).residual());
  return silent - left * left;
}

double line_fit::strongest(double lo, double hi) const {
  double best = -1.0, most = 0.0;
  const auto consider = [&](double bin, double power) {
    if (!(power > most) || bin < lo || bin > hi) return;
    most = power;
    best = bin;
  };
  const auto power_of = [&](int32_t k) { return std::pow(bins_[2 * k], 2) + std::pow(bins_[2 * k + 1], 2); };
  const auto last = static_cast<int32_t>(half_rate() - fitted);
  double sum = 0.0;  // over the seven bins of a line
  for (auto k = static_cast<int32_t>(fitted) - 3; k <= last + 3; ++k) {
    sum = 0.0;
    for (int32_t i = k - 3; i <= k + 3; ++i) sum += power_of(i);
    consider(k, sum);
  }
  // At the ends a line overlaps its own image, or the offset.
  for (const double end : {0.0, half_rate()}) {
    const range rows = around(end, end, 2.0 * fitted);
    const double silent = std::pow(norm(least_squares(model({}, rows), data(rows)).residual()), 2);
    for (double distance = 0.5; distance <= fitted; distance += 0.25)
      consider(std::abs(end - distance), explained(std::abs(end - distance), rows, silent));
  }
  return best;
}

/** One step of Gauss and Newton: the lines' amplitudes with their places held, then all together with the way along
 * which the lines move as the tone does. */
struct line_fit::step {
  range rows;
  least_squares held, moved;
  std::size_t unknowns;
  std::vector<column> columns;
  double move() const { return moved[unknowns - 1]; }
};

line_fit::step line_fit::step_from(double bin, int harmonics) const {
  const std::vector<harmonic> lines = neighbours(bin, harmonics);
  const range rows = around(bin, bin, fitted);
  std::vector<column> columns = model(lines, rows);
  const column y = data(rows);
  const least_squares held(columns, y);
  column along(y.size(), 0.0);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const column slope = slope_of_line(lines[i].bin, held[2 * i], held[2 * i + 1], rows);
    for (std::size_t k = 0; k < along.size(); ++k) along[k] += lines[i].slope * slope[k];
  }
  columns.push_back(along);
  return {rows, held, least_squares(columns, y), columns.size(), columns};
}

/** The length of what the fit leaves of the bins that matter to the line, as if its unknowns had taken none of it. */
double line_fit::rest_of(const least_squares &fit, const range &fitted_rows, std::size_t unknowns, double bin) const {
  const range near = around(bin, bin, judged);
  const auto count = static_cast<std::size_t>(fitted_rows.last - fitted_rows.first + 1);
  column rest;
  for (int32_t k = near.first; k <= near.last; ++k)
    for (const std::size_t part : {std::size_t{0}, count})
      rest.push_back(fit.residual()[static_cast<std::size_t>(k - fitted_rows.first) + part]);
  const auto rows = static_cast<double>(rest.size());
  return norm(rest) * std::sqrt(rows / std::max(rows - static_cast<double>(unknowns), 1.0));
}

/** How far the amplitude at the record's ends is from that in its middle, by a fit in which the amplitude may change in
 * proportion to the time and to its square; less three times the error that the rest of the spectrum makes. */
double line_fit::variation(const step &s, double bin) const {
  const double a = s.held[0], b = s.held[1], size = std::hypot(a, b);
  std::vector<column> columns = s.columns;
  columns.push_back(slope_of_line(bin, -b / size, a / size, s.rows));
  columns.push_back(curvature_of_line(bin, a / size, b / size, s.rows));
  columns.push_back(curvature_of_line(bin, -b / size, a / size, s.rows));  // of the phase
  const least_squares fit(columns, data(s.rows));
  const double rest = rest_of(fit, s.rows, columns.size(), bin);
  const auto ends = [&](std::size_t unknown, double scale) {
    column weights(columns.size(), 0.0);
    weights[unknown] = 1.0;
    return scale * std::max(std::abs(fit[unknown]) - 3.0 * rest * fit.sensitivity(weights), 0.0);
  };
  const std::size_t first = s.unknowns;
  return ends(first, pi) + ends(first + 1, pi * pi);
}

tone_fit line_fit::tone(double bin, int harmonics) const {
  const auto settle = [&](int h) {
    step s = step_from(bin, h);
    for (int iteration = 0; iteration < 50 && std::abs(s.move()) > 1e-10; ++iteration) {
      bin = std::clamp(bin + std::clamp(s.move(), -0.25, 0.25), 0.0, half_rate());
      s = step_from(bin, h);
    }
    return s;
  };
  settle(1);  // first alone: harmonics can be told from each other once the place is known
  const step s = settle(harmonics);
  const double a = s.held[0], b = s.held[1];
  tone_fit t = {bin, std::hypot(a, b), 0.0, 0.0};
  column weights(s.unknowns, 0.0);
  weights[0] = a / t.amplitude;
  weights[1] = b / t.amplitude;
  constexpr double safety = 2.0;  // noise of neighbouring bins is correlated
  const double rest = safety * rest_of(s.held, s.rows, s.unknowns, bin);
  t.amplitude_error = rest * s.moved.sensitivity(weights) + variation(s, bin);
  std::fill(weights.begin(), weights.end(), 0.0);
  weights.back() = 1.0;
  t.bin_error = rest * s.moved.sensitivity(weights) + std::abs(s.move());
  return t;
}

std::vector<double> line_fit::amplitudes(double bin, int harmonics) const {
  std::vector<double> found(static_cast<std::size_t>(harmonics), std::nan(""));
  std::vector<std::pair<double, std::size_t>> lines;  // place, and which harmonic
  for (int h = 1; h <= harmonics; ++h) {
    const double at = folded(bin, h);
    bool is_free = h == 1 || std::min(at, half_rate() - at) > least_distance;
    for (const auto &other : lines) is_free = is_free && std::abs(other.first - at) > least_distance;
    if (is_free) lines.emplace_back(at, static_cast<std::size_t>(h) - 1);
  }
  std::sort(lines.begin(), lines.end());
  for (std::size_t first = 0, last = 0; first < lines.size(); first = last + 1) {
    std::vector<harmonic> group;
    for (last = first; last < lines.size(); ++last) {
      group.push_back({lines[last].first, 0.0});
      if (last + 1 == lines.size() || lines[last + 1].first - lines[last].first > 2.0 * judged) break;
    }
    const range rows = around(group.front().bin, group.back().bin, judged);
    const least_squares fit(model(group, rows), data(rows));
    for (std::size_t i = 0; i < group.size(); ++i)
      found[lines[first + i].second] = std::hypot(fit[2 * i], fit[2 * i + 1]);
  }
  return found;
}

}  // namespace examples
