#include "examples/support/json.h"

#include <cmath>
#include <cstdio>

namespace examples {
namespace {

std::string number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.17g", value);
  return std::isfinite(value) ? text : "null";
}

std::string quoted(const std::string &value) {
  std::string text = "\"";
  char escape[8];
  for (const char c : value) {
    std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(static_cast<unsigned char>(c)));
    text += c == '"' || c == '\\' || static_cast<unsigned char>(c) < ' ' ? std::string(escape) : std::string(1, c);
  }
  return text + "\"";
}

template <class T, class Text>
std::string list(const std::vector<T> &values, Text text_of) {
  std::string text;
  for (const T &value : values) text += (text.empty() ? "" : ", ") + text_of(value);
  return "[" + text + "]";
}

}  // namespace

json &json::add(const std::string &name, double value) { return add_text(name, number(value)); }

json &json::add(const std::string &name, const std::string &value) { return add_text(name, quoted(value)); }

json &json::add(const std::string &name, const std::vector<double> &values) {
  return add_text(name, list(values, number));
}

json &json::add(const std::string &name, const std::vector<json> &values) {
  return add_text(name, list(values, [](const json &value) { return value.text(); }));
}

json &json::add(const std::string &name, const std::vector<std::string> &values) {
  return add_text(name, list(values, quoted));
}

json &json::add_text(const std::string &name, const std::string &value) {
  members_ += (members_.empty() ? "" : ", ") + quoted(name) + ": " + value;
  return *this;
}

void json::print() const { std::printf("%s\n", text().c_str()); }

}  // namespace examples
