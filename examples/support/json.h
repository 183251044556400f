#pragma once

#include <string>
#include <vector>

namespace examples {

/** An object of JSON, member by member. Numbers keep all their digits; one that is not finite becomes null. */
class json {
 public:
  json &add(const std::string &name, double value);
  json &add(const std::string &name, const std::string &value);
  json &add(const std::string &name, const std::vector<double> &values);
  json &add(const std::string &name, const std::vector<json> &values);
  json &add(const std::string &name, const std::vector<std::string> &values);

  std::string text() const { return "{" + members_ + "}"; }
  /** Writes the object as one line to standard output. */
  void print() const;

 private:
  json &add_text(const std::string &name, const std::string &value);
  std::string members_;
};

}  // namespace examples
