#include "examples/support/arguments.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "examples/support/failure.h"

namespace examples {
namespace {

const option *find(const std::vector<option> &options, const std::string &name) {
  for (const option &o : options)
    if (name == o.name) return &o;
  return nullptr;
}

const option *find(const std::vector<option> &options, char letter) {
  for (const option &o : options)
    if (letter == o.letter) return &o;
  return nullptr;
}

std::string plain(double number) {
  std::ostringstream out;
  out.precision(15);
  out << number;
  return out.str();
}

std::string usage(const option &o) {
  std::string left = o.letter ? std::string("  -") + o.letter + ", --" + o.name : std::string("      --") + o.name;
  return o.value ? left + " " + o.value : left;
}

/** The option table as --help shows it. */
std::string describe(const std::vector<option> &options) {
  std::size_t width = 0;
  for (const option &o : options) width = std::max(width, usage(o).size() + 2);
  std::string all;
  for (const option &o : options) {
    std::string line = usage(o);
    std::istringstream help(o.help);
    for (std::string text; std::getline(help, text); line.clear())
      all += line + std::string(width - line.size(), ' ') + text + "\n";
  }
  return all;
}

/** A power of ten that doubles hold exactly, from 1e-22 to 1e22, applied to a whole number. */
double scaled(double number, int exponent) {
  static const double powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                  1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  return exponent < 0 ? number / powers[-exponent] : number * powers[exponent];
}

/** Digits with a point among them, as a whole number and its power of ten; returns where they end. */
std::size_t read_digits(const std::string &text, std::size_t i, int64_t *number, int *exponent) {
  int digits = 0;
  bool behind = false;
  for (; i < text.size() && digits < 18; ++i) {
    if (text[i] == '.' && !behind) {
      behind = true;
      continue;
    }
    if (text[i] < '0' || text[i] > '9') break;
    *number = 10 * *number + (text[i] - '0');
    *exponent -= behind;
    ++digits;
  }
  return digits > 0 ? i : 0;
}

/** Reads numbers like -12.5 or 1.25e-3 whose digits and power of ten are exact as doubles, so that one operation rounds
 * the result as strtod would. strtod takes ten times as long where long doubles are emulated, as in browsers. */
bool parse_short(const std::string &text, double *number) {
  const bool negative = text[0] == '-';
  int64_t digits = 0, power = 0;
  int exponent = 0, ignored = 0;
  std::size_t i = read_digits(text, negative, &digits, &exponent);
  if (i == 0 || digits > INT64_C(1) << 53) return false;
  if (i + 1 < text.size() && (text[i] == 'e' || text[i] == 'E')) {
    const bool below = text[i + 1] == '-';
    const std::size_t first = i + 1 + (below || text[i + 1] == '+');
    i = read_digits(text, first, &power, &ignored);
    if (i == 0 || text.find('.', first) < i || power > 99) return false;
    exponent += static_cast<int>(below ? -power : power);
  }
  if (i != text.size() || exponent < -22 || exponent > 22) return false;
  *number = scaled(static_cast<double>(negative ? -digits : digits), exponent);
  if (negative && digits == 0) *number = -0.0;
  return true;
}

}  // namespace

std::vector<option> joined(std::vector<option> first, const std::vector<option> &more) {
  first.insert(first.end(), more.begin(), more.end());
  return first;
}

bool parse_number(const std::string &text, double *number) {
  if (text.empty() || std::isspace(static_cast<unsigned char>(text[0]))) return false;
  if (parse_short(text, number)) return true;
  if (text.find_first_of("xX") != std::string::npos) return false;  // hexadecimal
  char *end = nullptr;
  *number = std::strtod(text.c_str(), &end);
  return end == text.c_str() + text.size();
}

arguments::arguments(int argc, char **argv, const std::vector<option> &options) {
  bool only_words = false;
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (only_words || word.size() < 2 || word[0] != '-') {
      words_.push_back(word);
      continue;
    }
    if (word == "--") {
      only_words = true;
      continue;
    }
    const bool is_long = word[1] == '-';
    const std::size_t equals = is_long ? word.find('=') : std::string::npos;
    const std::string shown = is_long ? word.substr(0, equals) : word.substr(0, 2);
    const option *o = is_long ? find(options, shown.substr(2)) : find(options, word[1]);
    if (!o) throw failure("unknown option " + shown + "; --help lists them");
    const bool attached = is_long ? equals != std::string::npos : word.size() > 2;
    if (!o->value) {
      if (attached) throw failure(shown + " takes no value");
      values_[o->name] = "";
    } else if (attached) {
      values_[o->name] = word.substr(is_long ? equals + 1 : 2);
    } else if (i + 1 < argc) {
      values_[o->name] = argv[++i];
    } else {
      throw failure(shown + " needs a value: " + o->value);
    }
  }
}

std::string arguments::text(const std::string &name, const std::string &otherwise) const {
  const auto found = values_.find(name);
  return found == values_.end() ? otherwise : found->second;
}

double arguments::number(const std::string &name, double otherwise, double lo, double hi) const {
  if (!has(name)) return otherwise;
  const std::string word = text(name, "");
  double number = 0.0;
  if (!parse_number(word, &number) || !std::isfinite(number))
    throw failure("--" + name + ": '" + word + "' is not a number");
  if (!(number >= lo && number <= hi))
    throw failure("--" + name + ": " + word + " is not within " + plain(lo) + " ... " + plain(hi));
  return number;
}

int64_t arguments::integer(const std::string &name, int64_t otherwise, int64_t lo, int64_t hi) const {
  const double value = number(name, static_cast<double>(otherwise), static_cast<double>(lo), static_cast<double>(hi));
  if (value != std::floor(value)) throw failure("--" + name + ": " + text(name, "") + " is not a whole number");
  return static_cast<int64_t>(value);
}

int run(const program &p, int argc, char **argv, const std::function<int(const arguments &)> &body) {
  return run(p.name, [&] {
    std::vector<option> options = p.options;
    options.push_back({'h', "help", nullptr, "this text"});
    options.push_back({0, "version", nullptr, "the release"});
    const arguments given(argc, argv, options);
    if (given.has("help"))
      std::printf("%s%s%s", p.introduction, describe(options).c_str(), p.notes);
    else if (given.has("version"))
      std::printf("%s %s\n", p.name, DSP_RELEASE);
    else
      return body(given);
    return 0;
  });
}

}  // namespace examples
