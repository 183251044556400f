// One call of one routine: its arguments drawn from the input, its promises checked.
#pragma once

#include <cstddef>
#include <cstdint>
#include <tuple>

#include "dsp/dsp.h"
#include "fuzz/check.h"
#include "fuzz/digest.h"
#include "fuzz/input.h"
#include "fuzz/signals.h"

namespace fuzz {

// What a routine promises beside what holds for all. The lowest bits say which of its signals may be null; the first is
// bit 0.
enum : unsigned {
  creates = 1u << 8,       // its first signal says what is wanted, however much that is
  folds = 1u << 9,         // its output is an input, too
  same_length = 1u << 10,  // of its first signal
  no_nan = 1u << 11,       // comes out when all that goes in lies within +-1e100
  rounds = 1u << 12        // to last bits that depend on the instruction set
};

class play;

struct row {
  const char *name;
  int32_t (*call)(play *p);  // returns the status
  unsigned promises;
};

class play {
 public:
  play(const row &r, input *bytes, signals *records, bool tells_calls)
      : routine(r), in(bytes), all(records), tells(tells_calls) {}

  const row &routine;
  input *const in;
  signals *const all;
  const bool tells;

  // Calls it with arguments drawn by their type. A signal that is only read is an input; the first other one
  // after it is an output, whose length says nothing; all else is both.
  template <class... Args>
  int32_t call(int32_t (*function)(Args...)) {
    const std::tuple<Args...> arguments{draw(static_cast<Args *>(nullptr))...};  // braces: from left to right
    disturb();
    const int32_t status = std::apply(function, arguments);
    note(integer_result_);
    note(number_result_);
    return status;
  }

  dsp_vec *output(bool is_input);
  const dsp_vec *input_signal();
  double number();
  int32_t integer();

  // For rows that know more of their routine.
  void check(bool holds, const char *promise) const { fuzz::check(holds, routine.name, promise); }
  void note(double result) { digest = mix(digest, result); }
  void note(const double *results, std::size_t n) { digest = mix(digest, results, n); }

  void forget_output();

  // What the routine was given, and what came out beside the signals.
  unsigned changed = 0;  // signals that it may change, a bit each
  int first = -1;        // the first of them
  int32_t first_length = 0;
  bool is_sane = true;  // all inputs lie within +-1e100
  uint64_t digest = 0;

 private:
  const dsp_vec *draw(const dsp_vec **) { return input_signal(); }
  dsp_vec *draw(dsp_vec **) { return output((routine.promises & folds) != 0 || !reads_ || sized_ >= 0); }
  double draw(double *) { return number(); }
  int32_t draw(int32_t *) { return integer(); }
  uint32_t draw(uint32_t *) { return static_cast<uint32_t>(integer()); }
  int32_t *draw(int32_t **) { return &integer_result_; }
  double *draw(double **) { return &number_result_; }

  int draw_signal();
  void disturb();

  int used_[signals::count] = {};  // how often each signal is given
  int drawn_ = 0;                  // signals, null ones included
  int sized_ = -1;                 // the signal whose length says nothing
  bool reads_ = false;
  int32_t integer_result_ = 0;
  double number_result_ = 0.0;
};

// Runs the row and insists on what it and every routine promises. Returns a digest of the results beside the signals.
uint64_t run(const row &r, input *in, signals *all, bool tells);

}  // namespace fuzz
