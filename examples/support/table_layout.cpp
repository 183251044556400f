#include "examples/support/table_layout.h"

#include <algorithm>
#include <cctype>
#include <cmath>

#include "examples/support/arguments.h"
#include "examples/support/failure.h"
#include "examples/support/table_line.h"

namespace examples {
namespace {

using line_list = std::vector<std::string>;

std::string lower(std::string text) {
  for (char &c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

bool is_one_of(const std::string &text, const std::vector<std::string> &all) {
  return std::find(all.begin(), all.end(), text) != all.end();
}

[[noreturn]] void refuse(const std::string &path, std::size_t line, const std::string &what) {
  throw failure(path + ", line " + std::to_string(line + 1) + ": " + what);
}

/** Everything outside of quotes. */
std::string unquoted(const std::string &line) {
  std::string text;
  bool quoted = false;
  for (const char c : line) {
    if (c == '"') quoted = !quoted;
    if (!quoted && c != '"') text += c;
  }
  return text;
}

bool is_digit(const std::string &text, std::size_t i) {
  return i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])) != 0;
}

/** Does a comma stand where only a decimal comma can: between digits, in a line that tabs divide? */
bool has_decimal_comma(const std::string &text) {
  const std::size_t at = text.find(',');
  return at != std::string::npos && at > 0 && is_digit(text, at - 1) && is_digit(text, at + 1);
}

/** The strongest separator that most of the lines hold: no number has a semicolon in it, nor a tab. */
char separator_of(const line_list &data) {
  for (const char separator : {';', '\t', ','}) {
    std::size_t with = 0;
    for (const std::string &line : data) {
      const std::string text = unquoted(line);
      const bool is_padding = separator == '\t' && text.find(',') != std::string::npos && !has_decimal_comma(text);
      with += !is_padding && text.find(separator) != std::string::npos;
    }
    if (2 * with > data.size()) return separator;
  }
  return ' ';
}

struct table {
  std::vector<line_list> rows;
  std::size_t count(std::size_t from, std::size_t column, char decimal) const {
    std::size_t numbers = 0;
    double number = 0.0;
    for (std::size_t i = from; i < rows.size(); ++i)
      numbers += column < rows[i].size() && parse_field(rows[i][column], decimal, &number);
    return numbers;
  }
};

/** The decimal sign of the numbers; where commas divide them, it can only be the point. */
char decimal_of(const std::string &path, const table &t, std::size_t from, char separator) {
  if (separator != ';' && separator != '\t') return '.';
  double number = 0.0;
  char found = '\0';
  for (std::size_t i = from; i < t.rows.size(); ++i)
    for (const std::string &field : t.rows[i])
      for (const char sign : {',', '.'}) {
        if (field.find(sign) == std::string::npos || !parse_field(field, sign, &number)) continue;
        if (found && found != sign)
          refuse(path, i, "'" + field + "' has another decimal sign than the numbers before it");
        found = sign;
      }
  return found ? found : '.';
}

std::string bare_unit(const std::string &text) {
  const bool enclosed =
      text.size() > 2 && ((text.front() == '(' && text.back() == ')') || (text.front() == '[' && text.back() == ']'));
  return enclosed ? text.substr(1, text.size() - 2) : text;
}

struct unit_parts {
  double scale;
  std::string base;  // empty: not known
};

unit_parts parts_of(const std::string &unit) {
  static const std::vector<std::string> symbols = {"V", "A", "W", "s", "Pa"};
  static const std::vector<std::string> words = {"volt", "volts", "ampere", "amps", "second", "seconds", "sec"};
  static const struct {
    const char *text;
    double scale;
  } prefixes[] = {{"", 1.0},      {"m", 1e-3}, {"u", 1e-6},  {"\xc2\xb5", 1e-6}, {"\xce\xbc", 1e-6},
                  {"\xb5", 1e-6}, {"n", 1e-9}, {"p", 1e-12}, {"k", 1e3},         {"M", 1e6}};
  for (const auto &p : prefixes)
    for (const std::string &s : symbols)
      if (unit == p.text + s && (s != "s" || p.scale <= 1.0)) return {p.scale, s};  // "Ms" is a slip
  if (is_one_of(lower(unit), words)) return {1.0, lower(unit)[0] == 's' ? "s" : lower(unit).substr(0, 1)};
  return {1.0, ""};
}

bool names_time(const std::string &name) { return is_one_of(lower(name), {"time", "t", "seconds", "second"}); }

/** "t / s", or "t/s" of a time only: "m/s" is a unit itself. */
void divide_by_unit(const std::string &text, table_column *c) {
  const std::size_t slash = text.find('/');
  if (slash == std::string::npos) return;
  const std::string name = trimmed(text.substr(0, slash)), unit = trimmed(text.substr(slash + 1));
  const bool is_spaced = name.size() < slash && text[slash - 1] == ' ';
  if (is_spaced ? parts_of(unit).base.empty() : !(names_time(name) && is_time(unit))) return;
  c->name = name;
  c->unit = unit;
}

/** The unit stands in the last pair of brackets, wherever that is, or behind a slash. */
table_column column_named(const std::string &path, std::size_t line, const std::string &text) {
  table_column c = {text, text, "", false};
  const std::size_t open = text.find_last_of("(["), close = text.find_last_of(")]");
  if (open == std::string::npos && close == std::string::npos) {
    divide_by_unit(text, &c);
    return c;
  }
  if (open == std::string::npos || close == std::string::npos || close < open)
    refuse(path, line, "the unit in '" + text.substr(0, 40) + "' is not clear: a bracket is missing");
  c.unit = text.substr(open + 1, close - open - 1);
  c.name = text.substr(0, open) + text.substr(close + 1);
  c.name.erase(c.name.find_last_not_of(" \t") + 1);
  return c;
}

bool is_units(const line_list &row) {
  std::size_t known = 0;
  for (const std::string &field : row) {
    if (parts_of(bare_unit(field)).base.empty() && bare_unit(field) == field && !field.empty()) return false;
    known += !field.empty();
  }
  return known > 0;
}

bool is_data(const line_list &row, const std::vector<table_column> &columns, char decimal) {
  double number = 0.0;
  bool any = false;
  for (std::size_t k = 0; k < columns.size(); ++k) {
    if (!columns[k].has_numbers) continue;
    if (k >= row.size() || !parse_field(row[k], decimal, &number)) return false;
    any = true;
  }
  return any;
}

/** Takes names and units from the last lines before the data. */
void read_header(const std::string &path, const table &t, table_layout *layout) {
  std::vector<std::size_t> before;
  for (std::size_t i = 0; i < layout->first; ++i)
    if (!t.rows[i].empty()) before.push_back(i);
  if (before.empty()) return;
  const line_list *units = nullptr;
  if (before.size() > 1 && is_units(t.rows[before.back()])) {
    units = &t.rows[before.back()];
    before.pop_back();
  }
  const line_list &names = t.rows[before.back()];
  const std::size_t n = layout->columns.size();
  if (names.size() != n) {
    if (names.size() == 1 && !units) return;  // a title
    refuse(path, before.back(), std::to_string(names.size()) + " names above " + std::to_string(n) + " columns");
  }
  for (std::size_t k = 0; k < n; ++k) {
    const bool has_numbers = layout->columns[k].has_numbers;
    layout->columns[k] = column_named(path, before.back(), names[k]);
    layout->columns[k].has_numbers = has_numbers;
    if (units && k < units->size()) layout->columns[k].unit = bare_unit((*units)[k]);
  }
  layout->has_header = true;
}

std::string names_of(const table_layout &layout) {
  std::string all;
  for (const table_column &c : layout.columns)
    if (c.has_numbers) all += (all.empty() ? "" : ", ") + c.text.substr(0, 30);
  return all;
}

}  // namespace

table_layout find_layout(const std::string &path, const line_list &lines) {
  std::vector<std::size_t> filled;
  for (std::size_t i = 0; i < lines.size(); ++i)
    if (lines[i].find_first_not_of(" \t\r") != std::string::npos) filled.push_back(i);
  if (filled.empty()) throw failure(path + " holds no numbers");
  // The later half of the lines holds data; what stands before them is compared with it.
  const std::size_t middle = filled[filled.size() / 2];
  table_layout layout = {
      separator_of({lines.begin() + static_cast<std::ptrdiff_t>(middle), lines.end()}), '.', 0, {}, false};
  table t;
  std::size_t width = 0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    t.rows.emplace_back();
    if (!split_line(lines[i], layout.separator, &t.rows.back())) {
      if (i >= middle) refuse(path, i, "a quote that is not closed");
      t.rows.back() = {lines[i]};
    }
    if (i >= middle) width = std::max(width, t.rows.back().size());
  }
  layout.decimal = decimal_of(path, t, middle, layout.separator);
  const std::size_t half = (filled.size() - filled.size() / 2 + 1) / 2;
  for (std::size_t k = 0; k < width; ++k)
    layout.columns.push_back({"", "", "", t.count(middle, k, layout.decimal) >= half});
  const auto data_at = [&](std::size_t k) {
    return k < filled.size() && is_data(t.rows[filled[k]], layout.columns, layout.decimal);
  };
  std::size_t first = 0;
  while (first < filled.size() && !(data_at(first) && (first + 1 == filled.size() || data_at(first + 1)))) ++first;
  if (first == filled.size()) refuse(path, middle, "no numbers, or not in the same columns as in the lines around it");
  for (std::size_t k = 0; k < first; ++k)
    if (data_at(k)) refuse(path, filled[k] + 1, "no numbers, unlike the lines before and after it");
  layout.first = filled[first];
  read_header(path, t, &layout);
  return layout;
}

std::size_t table_layout::time() const {
  for (std::size_t k = 0; k < columns.size(); ++k) {
    if (columns[k].has_numbers && (is_time(columns[k].unit) || names_time(columns[k].name))) return k;
  }
  return columns.size();
}

std::size_t table_layout::find(const std::string &path, const std::string &choice) const {
  std::vector<std::size_t> exact, loose;
  const std::size_t of_times = time();
  for (std::size_t k = 0; k < columns.size(); ++k) {
    const table_column &c = columns[k];
    if (choice.empty() ? c.has_numbers && k != of_times : has_header && (choice == c.text || choice == c.name))
      exact.push_back(k);
    else if (!choice.empty() && has_header && lower(choice) == lower(c.name))
      loose.push_back(k);
  }
  double number = 0.0;
  if (parse_number(choice, &number) && number >= 1.0 && number == std::floor(number) && number < 1e6) {
    const std::size_t place = static_cast<std::size_t>(number) - 1;
    if (exact.size() == 1 && exact[0] != place)
      throw failure(path + ": --column " + choice + " is a place and also the name of column " +
                    std::to_string(exact[0] + 1));
    if (place >= columns.size())
      throw failure(path + " has no column " + choice + ", but " + std::to_string(columns.size()));
    return place;
  }
  if (exact.empty()) exact = loose;
  if (choice.empty() && exact.empty() && of_times < columns.size())
    throw failure(path + " holds no numbers beside a time");
  if (exact.empty())
    throw failure(path + " has no column '" + choice + "'" +
                  (has_header ? ", but " + names_of(*this) : ": it has no header"));
  if (exact.size() > 1 && choice.empty())
    throw failure(path + " has several columns" + (has_header ? ", " + names_of(*this) : "") +
                  ": --column chooses one");
  if (exact.size() > 1) throw failure(path + " has several columns '" + choice + "': give a number from 1");
  return exact[0];
}

bool is_time(const std::string &unit) { return parts_of(unit).base == "s"; }

double unit_scale(const std::string &unit) { return parts_of(unit).scale; }

}  // namespace examples
