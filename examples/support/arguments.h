#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace examples {

/** One row of a program's option table; `value` names the argument of the option, null for a switch. */
struct option {
  char letter;  // 0: long form only
  const char *name;
  const char *value;
  const char *help;  // may hold line breaks
};

std::vector<option> joined(std::vector<option> first, const std::vector<option> &more);

/** A command line, taken apart by a table: --name value, --name=value, -l value, -lvalue; "--" ends the options. The
 * last of repeated options counts. Everything wrong is a failure that names the option. */
class arguments {
 public:
  arguments(int argc, char **argv, const std::vector<option> &options);

  bool has(const std::string &name) const { return values_.count(name) != 0; }
  std::string text(const std::string &name, const std::string &otherwise) const;
  /** A finite number within lo ... hi. */
  double number(const std::string &name, double otherwise, double lo, double hi) const;
  int64_t integer(const std::string &name, int64_t otherwise, int64_t lo, int64_t hi) const;
  const std::vector<std::string> &words() const { return words_; }

 private:
  std::map<std::string, std::string> values_;
  std::vector<std::string> words_;
};

/** A program's name, its options but for --help and --version, which all have, and the texts that --help prints before
 * and after them. */
struct program {
  const char *name;
  const char *introduction;
  const std::vector<option> &options;
  const char *notes;
};

/** Takes the command line apart and runs `body`, or prints help or version; returns the status for main. */
int run(const program &p, int argc, char **argv, const std::function<int(const arguments &)> &body);

/** The whole of `text` as a number; false when it is none. */
bool parse_number(const std::string &text, double *number);

}  // namespace examples
