// The signals that a sequence of calls works on: owned, borrowed, empty, or a second record on another's buffer.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"
#include "fuzz/block.h"
#include "fuzz/input.h"

namespace fuzz {

class signals {
 public:
  static constexpr int count = 5;

  explicit signals(input *in);
  ~signals();
  signals(const signals &) = delete;
  signals &operator=(const signals &) = delete;

  dsp_vec *operator[](int k) { return &records_[k]; }

  // Builds signal k anew.
  void make(int k, input *in);

  bool share(int a, int b) const;

  // All values within +-1e100.
  bool is_sane(int k) const;
  bool has_nan(int k) const;

  // Notes what all signals hold; afterwards those outside `changed` (a bit each) must be the same records, and those
  // that share no buffer with one inside hold the same samples.
  void remember();
  void check_untouched(unsigned changed, const char *routine) const;

  // After a call that was given the signals `changed`: they must be records as the status promises. Views whose owner
  // has got another buffer become empty, and so does a signal that a failed call left longer than its buffer.
  void settle(unsigned changed, int32_t status, const char *routine);

  // Of spacings, lengths and samples; any NaN is like any other.
  uint64_t digest() const;

 private:
  struct memory {
    dsp_vec record;
    uint64_t samples;
    unsigned sharing;  // a bit for each signal on the same buffer
  };

  int64_t room(int k) const;  // doubles that signal k may touch
  void empty_stale_views();

  dsp_vec records_[count];
  int owner_[count];  // of a view; -1: none
  block<double> lent_[count];
  memory remembered_[count];
  int32_t usual_;  // a length that many signals have, since most routines want equal ones
};

}  // namespace fuzz
