#include "dsp/resample/kernel_rows.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "dsp/core/sizing.h"
#include "dsp/core/work_signal.h"
#include "dsp/dsp.h"

namespace dsp::resample {
namespace {

work_signal store;  // the kernel's points, its rows, and a mark for each row
kernel_rows held;   // these, of the last kernel
isa held_for;       // instruction sets differ in how they lay out a row
bool is_held = false;

// The caller may have changed the table since the last call, so that all its points are compared. Above this number
// that may take longer than to fill the few rows that a short block needs.
constexpr int64_t most_compared = 1 << 15;

int64_t points_of(const kernel &k) { return int64_t{k.taps} * k.phases + 1; }

bool holds(const kernel &k) {
  return is_held && held_for == active_isa() && held.taps == k.taps && held.phases == k.phases &&
         std::memcmp(held.points, k.points, static_cast<std::size_t>(points_of(k)) * sizeof(double)) == 0;
}

}  // namespace

kernel_rows *obtain_rows(const kernel &k) {
  if (holds(k)) return &held;
  is_held = false;
  const bool keeps = points_of(k) <= most_compared;
  const int64_t rows = rows_of(k.phases) * row_stride(k.taps);
  const int64_t points = keeps ? points_of(k) : 0;
  const int64_t marks = rows_of(k.phases) / static_cast<int64_t>(sizeof(double)) + 1;
  if (!countable(rows + points + marks)) return nullptr;  // GCOVR_EXCL_BR_LINE: takes gigabytes
  dsp_vec *room = store.obtain();
  room->length = static_cast<int32_t>(rows + points + marks);
  if (dsp_alloc(room) != 0) return nullptr;
  double *copy = room->data + rows;
  std::copy_n(k.points, points, copy);
  auto *ready = reinterpret_cast<unsigned char *>(copy + points);
  std::memset(ready, 0, static_cast<std::size_t>(rows_of(k.phases)));
  held = {keeps ? copy : k.points, k.taps, k.phases, room->data, ready, 0, k.phases};
  held_for = active_isa();
  is_held = keeps;
  return &held;
}

void free_rows() {
  is_held = false;
  store.release();
}

}  // namespace dsp::resample
