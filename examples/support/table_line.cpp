#include "examples/support/table_line.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "examples/support/arguments.h"

namespace examples {
namespace {

const char *const blanks = " \t\r";

bool ends_field(char c, char separator) { return separator == ' ' ? c == ' ' || c == '\t' : c == separator; }

}  // namespace

std::string trimmed(const std::string &text) {
  const std::size_t first = text.find_first_not_of(blanks);
  return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool split_line(const std::string &line, char separator, std::vector<std::string> *fields) {
  fields->clear();
  const std::string text = trimmed(line) == "" ? "" : separator == ' ' ? trimmed(line) : line;
  std::string field;
  bool quoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '"' && quoted && i + 1 < text.size() && text[i + 1] == '"') {
      field += text[++i];
    } else if (c == '"' && (quoted || trimmed(field).empty())) {
      quoted = !quoted;
    } else if (quoted || !ends_field(c, separator)) {
      field += c;
    } else if (separator != ' ' || !field.empty()) {
      fields->push_back(trimmed(field));
      field.clear();
    }
  }
  // A separator at the end of a line ends its last field and begins none.
  if (!trimmed(field).empty()) fields->push_back(trimmed(field));
  return !quoted;
}

std::string without_comment(const std::string &line) {
  std::size_t at = line.find('#');
  while (at != std::string::npos && at > 0 && line[at - 1] != ' ' && line[at - 1] != '\t') at = line.find('#', at + 1);
  return line.substr(0, at);
}

bool parse_field(const std::string &field, char decimal, double *number) {
  if (decimal == '.') return parse_number(field, number);
  if (field.find('.') != std::string::npos) return false;
  std::string text = field;
  std::replace(text.begin(), text.end(), decimal, '.');
  return parse_number(text, number);
}

void number_digits::look_at(const std::string &field, char decimal) {
  const std::size_t end = std::min(field.find_first_of("eE"), field.size());
  int digits = 0, places = 0;
  bool behind = false;
  for (std::size_t i = 0; i < end; ++i) {
    behind = behind || field[i] == decimal;
    const bool is_digit = field[i] >= '0' && field[i] <= '9';
    digits += is_digit && (digits > 0 || field[i] != '0');
    places += is_digit && behind;
  }
  const double exponent = end < field.size() ? std::strtod(field.c_str() + end + 1, nullptr) : 0.0;
  digits_ = std::max(digits_, digits);
  places_ = std::max(places_, static_cast<int>(std::clamp(places - exponent, -400.0, 400.0)));
}

double number_digits::last_place(double number) const {
  const double magnitude = number > 0.0 ? std::floor(std::log10(number)) : -400.0;
  return std::pow(10.0, std::max<double>(-places_, magnitude + 1.0 - digits_));
}

}  // namespace examples
