#pragma once

#include <chrono>
#include <string>

namespace examples {

/** A line on the terminal that tells how far a long job is: from its second second on, ten times a second, and
 * nothing at all when stderr is not a terminal. */
class progress {
 public:
  explicit progress(const std::string &what);
  ~progress();
  progress(const progress &) = delete;
  progress &operator=(const progress &) = delete;

  void show(double share);

 private:
  using clock = std::chrono::steady_clock;
  std::string what_;
  clock::time_point next_;
  bool on_terminal_;
  bool shown_ = false;
};

}  // namespace examples
