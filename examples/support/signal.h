#pragma once

#include <cstddef>

#include "dsp/dsp.h"
#include "examples/support/failure.h"

namespace examples {

/** A dsp_vec that destroys itself. */
struct signal : dsp_vec {
  signal() { dsp_init(this); }
  explicit signal(int32_t samples, uint32_t complex = 0) {
    dsp_init(this);
    resize(samples, complex);
  }
  ~signal() { dsp_destroy(this); }
  signal(const signal &) = delete;
  signal &operator=(const signal &) = delete;

  void resize(int32_t samples, uint32_t complex = 0) {
    length = samples;
    is_complex = complex;
    require(dsp_alloc(this), "get memory for a signal");
  }
  double &operator[](int32_t i) { return data[i]; }
  const double &operator[](int32_t i) const { return data[i]; }
};

}  // namespace examples
