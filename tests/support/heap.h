// The heap of the tests, linked in place of the library's: it counts, fills fresh memory with garbage, catches foreign
// and double frees, and fails on request.
#pragma once

#include <cstddef>
#include <cstdint>

namespace support {

long heap_live();                      // blocks now allocated
std::size_t heap_size(double *block);  // its bytes; 0: no block
void heap_limit(std::size_t bytes);    // larger requests fail
long heap_requests();                  // requests ever made
long heap_lost();  // blocks given up by dsp_realloc when a resize failed (its stated behaviour); the test heap frees
                   // them

// The k-th request from now on fails (k = 1 is the next), and all later ones with `for_ever`; 0 fails none.
void heap_fail(long k, bool for_ever = false);

// For another heap that fails together with this one: whether its next request fails, and its blocks as they come and
// go.
bool heap_refuses();
void heap_count(int blocks);

// While one lives, no request fails or counts: tests build their signals so.
class exempt {
 public:
  exempt();
  ~exempt();
  exempt(const exempt &) = delete;
  exempt &operator=(const exempt &) = delete;
};

// While one lives, operator new is one of the failing requests and what it gave out must come back.
class raising {
 public:
  raising();
  ~raising();
  raising(const raising &) = delete;
  raising &operator=(const raising &) = delete;
};

}  // namespace support
