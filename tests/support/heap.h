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

// For another heap that fails together with this one: whether its next request fails, and by how many its blocks have
// changed.
bool heap_refuses();
void heap_count(int blocks);

// While one exists, requests neither fail nor count. Tests build their signals under it.
class exempt {
 public:
  exempt();
  ~exempt();
  exempt(const exempt &) = delete;
  exempt &operator=(const exempt &) = delete;
};

// While one exists, operator new counts and fails like the other requests, and its blocks must be freed.
class raising {
 public:
  raising();
  ~raising();
  raising(const raising &) = delete;
  raising &operator=(const raising &) = delete;
};

}  // namespace support
