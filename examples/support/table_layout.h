#pragma once

#include <string>
#include <vector>

namespace examples {

/** A column as the header names it: "CH1 (mV)" has the name CH1 and the unit mV. */
struct table_column {
  std::string text, name, unit;
  bool has_numbers;
};

/** How a text file holds a table: found from its first lines, of which those before the data are a preamble that may
 * end in a line of names and one of units. */
struct table_layout {
  char separator, decimal;
  std::size_t first;  // line of the data, from 0
  std::vector<table_column> columns;
  bool has_header;

  /** The column that `choice` names: a number from 1, a text of the header with or without its unit. Empty: the only
   * one that holds numbers beside a time. */
  std::size_t find(const std::string &path, const std::string &choice) const;
  /** The column of the time; as many as there are columns: none. */
  std::size_t time() const;
};

/** All that is ambiguous is a failure that names file, line and reason. */
table_layout find_layout(const std::string &path, const std::vector<std::string> &lines);

bool is_time(const std::string &unit);

/** What a value in this unit is multiplied by: 1e-3 for mV and ms; 1 for a unit that is not known. */
double unit_scale(const std::string &unit);

}  // namespace examples
