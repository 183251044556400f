// The signals of one call of a routine: what they hold, and which of them share records and buffers.
#pragma once

#include <vector>

#include "tests/support/record.h"
#include "tests/support/routines.h"

namespace support {

struct part {
  char role;
  char kind;
  int length;
};

std::vector<part> parts_of(const routine &r);

// The contents of the signals for a row's length. `choice` picks, a bit each, the representation of those that have
// both; `hostile` mixes NaN, infinities, subnormals and neighbours of 1e100 into the values.
std::vector<record> contents(const std::vector<part> &signals, int n, unsigned choice, bool hostile);
unsigned choices(const std::vector<part> &signals);

enum class owner { first, last, none };

// Signals of equal `record` are one record; of equal `buffer`, records on one buffer, owned by the first or last of
// them, or borrowed.
struct arrangement {
  std::vector<int> record;
  std::vector<int> buffer;
  owner owned_by;
};

arrangement separate(const std::vector<part> &signals);
// Every one that is allowed, the separate one first.
std::vector<arrangement> arrangements(const std::vector<part> &signals);
std::string name_of(const arrangement &a);

// Signals that share a buffer hold the contents of the first of them.
std::vector<record> shared_contents(std::vector<record> contents, const arrangement &a);

// The records themselves, and the call on them. Building and destroying is exempt from failing memory.
class scene {
 public:
  scene(const std::vector<record> &contents, const arrangement &a);
  ~scene();
  scene(const scene &) = delete;
  scene &operator=(const scene &) = delete;

  int32_t run(const routine &r, int variant);
  const dsp_vec &operator[](std::size_t i) const { return *pointers_[i]; }
  dsp_vec &operator[](std::size_t i) { return *pointers_[i]; }
  const reals &numbers() const { return numbers_; }

 private:
  std::vector<reals> memory_;  // behind borrowed buffers
  std::vector<dsp_vec> records_;
  std::vector<dsp_vec *> pointers_;
  reals numbers_;
};

// Whether all that a routine writes is the same, bit for bit.
::testing::AssertionResult same_results(const std::vector<part> &signals, const scene &a, const scene &b);

// Calls `visit` for every variant, length up to `longest` and choice of representations of a routine.
template <class Visit>
void each_case(const routine &r, int longest, bool hostile, const Visit &visit) {
  const std::vector<part> signals = parts_of(r);
  for (int variant = 0; variant < r.variants; ++variant)
    for (const int n : r.lengths)
      for (unsigned choice = 0; n <= longest && choice < choices(signals); ++choice) {
        SCOPED_TRACE(testing::Message() << r.name << ", variant " << variant << ", length " << n << ", representations "
                                        << choice << (hostile ? ", hostile values" : ""));
        visit(signals, contents(signals, n, choice, hostile), variant);
      }
}

}  // namespace support
