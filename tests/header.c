/* The header alone, as strict C99 and C11 and as C++11, without a warning; the record as callers of other languages
 * count on it. */
#include <stddef.h>

#include "dsp/dsp.h"

#define HOLDS(name, condition) typedef char name[(condition) ? 1 : -1]

HOLDS(dx_is_first, offsetof(dsp_vec, dx) == 0);
HOLDS(data_follows, offsetof(dsp_vec, data) == 8);
HOLDS(capacity_follows, offsetof(dsp_vec, capacity) == 8 + sizeof(double *));
HOLDS(length_follows, offsetof(dsp_vec, length) == 12 + sizeof(double *));
HOLDS(flag_follows, offsetof(dsp_vec, is_complex) == 16 + sizeof(double *));
HOLDS(nothing_follows, sizeof(dsp_vec) - offsetof(dsp_vec, reserved) <= 8);
HOLDS(complex_is_two_doubles, sizeof(dsp_complex) == 16 && offsetof(dsp_complex, im) == 8);

int32_t header_compiles(void);
int32_t header_compiles(void) {
  dsp_vec v;
  return dsp_init(&v);
}
