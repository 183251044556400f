#pragma once

#include <string>
#include <vector>

namespace examples {

/** The fields of a line of a text table, without quotes and surrounding blanks. `separator` is a comma, a semicolon, a
 * tab, or a blank, which then stands for any run of blanks. False when a quote is not closed. */
bool split_line(const std::string &line, char separator, std::vector<std::string> *fields);

/** A line without what follows a '#' that begins it or follows a blank, and without its line end. */
std::string without_comment(const std::string &line);

std::string trimmed(const std::string &text);

/** The whole of a field as a number, with the point or the comma as the decimal sign; "nan" and "inf" are numbers. */
bool parse_field(const std::string &field, char decimal, double *number);

/** How finely the numbers of a column are written: with so many digits, or with so many places behind the decimal sign,
 * whichever is coarser. */
class number_digits {
 public:
  void look_at(const std::string &field, char decimal);
  /** What the last place of a number of this size is worth. */
  double last_place(double number) const;

 private:
  int digits_ = 0, places_ = -400;
};

}  // namespace examples
