#include "examples/support/touchstone.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <complex>
#include <cstdio>

#include "examples/support/arguments.h"
#include "examples/support/failure.h"
#include "examples/support/input_file.h"

namespace examples {
namespace {

constexpr double degrees_per_radian = 57.29577951308232;

struct header {
  double unit = 1e9;
  number_format format = number_format::ma;
  double resistance = 50.0;
};

[[noreturn]] void refuse(const std::string &path, int line, const std::string &what) {
  throw failure(path + ", line " + std::to_string(line) + ": " + what);
}

std::vector<std::string> words_of(const std::string &line) {
  static const char *const blanks = " \t\r\n\v\f";
  std::vector<std::string> words;
  for (std::size_t at = 0, end = 0; (at = line.find_first_not_of(blanks, end)) != std::string::npos;) {
    end = std::min(line.find_first_of(blanks, at), line.size());
    words.push_back(line.substr(at, end - at));
  }
  return words;
}

std::string upper(std::string word) {
  for (char &c : word) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return word;
}

/** The option line: # [HZ|KHZ|MHZ|GHZ] [S] [MA|DB|RI] [R n], in any order. */
header parse_header(const std::string &path, int line, const std::vector<std::string> &words) {
  header h;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string word = upper(words[i]);
    if (word == "HZ") {
      h.unit = 1.0;
    } else if (word == "KHZ") {
      h.unit = 1e3;
    } else if (word == "MHZ") {
      h.unit = 1e6;
    } else if (word == "GHZ") {
      h.unit = 1e9;
    } else if (word == "RI") {
      h.format = number_format::ri;
    } else if (word == "MA") {
      h.format = number_format::ma;
    } else if (word == "DB") {
      h.format = number_format::db;
    } else if (word == "R" && i + 1 < words.size()) {
      if (!parse_number(words[++i], &h.resistance) || !(h.resistance > 0.0) || std::isinf(h.resistance))
        refuse(path, line, "'" + words[i] + "' is not a reference resistance");
    } else if (word != "S") {
      refuse(path, line, "'" + words[i] + "' in the header; it should read like # MHz S RI R 50");
    }
  }
  return h;
}

std::complex<double> decode(number_format format, double first, double second) {
  if (format == number_format::ri) return {first, second};
  const double magnitude = format == number_format::db ? std::pow(10.0, first / 20.0) : first;
  const double angle = second / degrees_per_radian;
  return {magnitude * std::cos(angle), magnitude * std::sin(angle)};
}

void encode(number_format format, const dsp_complex &z, double *first, double *second) {
  *first = z.re;
  *second = z.im;
  if (format == number_format::ri) return;
  const double magnitude = std::hypot(z.re, z.im);
  *first = format == number_format::db ? 20.0 * std::log10(std::max(magnitude, 1e-100)) : magnitude;
  *second = std::atan2(z.im, z.re) * degrees_per_radian;
}

class parser {
 public:
  explicit parser(const std::string &path) { r_.name = path; }

  void add(std::string text) {
    if (++line_ == 1 && text.compare(0, 3, "\xef\xbb\xbf") == 0) text.erase(0, 3);  // byte-order mark
    text.erase(std::min(text.find('!'), text.size()));
    std::vector<std::string> words = words_of(text);
    if (words.empty()) return;
    if (words[0][0] == '#') {
      if (!has_header_) read_header(std::move(words));  // only the first one counts
    } else if (words[0][0] == '[') {
      refuse(r_.name, line_, "keywords of version 2; this program reads version 1");
    } else if (!has_header_) {
      refuse(r_.name, line_, "no header before the data; it should read like # MHz S RI R 50");
    } else {
      add_point(words);
    }
  }

  reflection done() {
    if (r_.s.empty()) throw failure(r_.name + ": no measured point");
    r_.resistance = header_.resistance;
    return std::move(r_);
  }

 private:
  void read_header(std::vector<std::string> words) {
    words[0].erase(0, 1);
    if (words[0].empty()) words.erase(words.begin());
    header_ = parse_header(r_.name, line_, words);
    has_header_ = true;
  }

  void add_point(const std::vector<std::string> &words) {
    double numbers[3] = {};
    if (words.size() != 3)
      refuse(r_.name, line_, std::to_string(words.size()) + " numbers; a one-port has three: frequency and two parts");
    for (std::size_t i = 0; i < 3; ++i)
      if (!parse_number(words[i], &numbers[i]) || !std::isfinite(numbers[i]))
        refuse(r_.name, line_, "'" + words[i].substr(0, 40) + "' is not a number");
    const double frequency = numbers[0] * header_.unit;
    if (frequency < 0.0 || (!r_.frequency.empty() && frequency <= r_.frequency.back()))
      refuse(r_.name, line_, "the frequencies do not rise");
    const std::complex<double> s = decode(header_.format, numbers[1], numbers[2]);
    if (!(std::abs(s) <= 1e100) || !(frequency <= 1e100)) refuse(r_.name, line_, "a number is too large");
    r_.frequency.push_back(frequency);
    r_.s.push_back({s.real(), s.imag()});
  }

  reflection r_;
  header header_;
  bool has_header_ = false;
  int line_ = 0;
};

}  // namespace

reflection read_touchstone(const std::string &path) {
  readable_size(path);
  const auto file = open_input(path);
  parser p(path);
  for (std::string line; std::getline(*file, line);) p.add(line);
  return p.done();
}

std::string touchstone(const reflection &r, number_format format, const std::string &comment) {
  static const char *const names[] = {"RI", "MA", "DB"};
  std::string text;
  for (std::size_t at = 0, end = 0; at < comment.size(); at = end + 1) {
    end = std::min(comment.find('\n', at), comment.size());
    text += "! " + comment.substr(at, end - at) + "\n";
  }
  char row[100];
  std::snprintf(row, sizeof row, "# Hz S %s R %.10g\n", names[static_cast<int>(format)], r.resistance);
  text += row;
  for (std::size_t i = 0; i < r.s.size(); ++i) {
    double first = 0.0, second = 0.0;
    encode(format, r.s[i], &first, &second);
    std::snprintf(row, sizeof row, "%.15g %.12g %.12g\n", r.frequency[i], first, second);
    text += row;
  }
  return text;
}

void require_same_sweep(const reflection &a, const reflection &b) {
  const std::string both = a.name + " and " + b.name;
  if (a.s.size() != b.s.size())
    throw failure(both + " do not belong together: " + std::to_string(a.s.size()) + " points and " +
                  std::to_string(b.s.size()));
  for (std::size_t i = 0; i < a.s.size(); ++i)
    if (std::abs(a.frequency[i] - b.frequency[i]) > 1e-9 * a.frequency[i])
      throw failure(both + " disagree in frequency: point " + std::to_string(i + 1) + " is at " +
                    hertz(a.frequency[i]) + " and " + hertz(b.frequency[i]));
  if (a.resistance != b.resistance) throw failure(both + " have different reference resistances");
}

std::string hertz(double frequency) {
  static const struct {
    double least, unit;
    const char *name;
  } units[] = {{1e9, 1e9, "GHz"}, {1e6, 1e6, "MHz"}, {1e3, 1e3, "kHz"}, {0.0, 1.0, "Hz"}};
  for (const auto &u : units) {
    if (frequency < u.least) continue;
    char text[40];
    std::snprintf(text, sizeof text, "%.4g %s", frequency / u.unit, u.name);
    return text;
  }
  return "0 Hz";
}

}  // namespace examples
