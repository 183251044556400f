// A signal that lives as long as its scope.
#pragma once

#include "dsp/dsp.h"

namespace dsp {

class temporary {
 public:
  temporary() { dsp_init(&v_); }
  ~temporary() { dsp_destroy(&v_); }
  temporary(const temporary &) = delete;
  temporary &operator=(const temporary &) = delete;

  dsp_vec *get() { return &v_; }
  dsp_vec *operator->() { return &v_; }
  dsp_vec &operator*() { return v_; }

 private:
  dsp_vec v_;
};

}  // namespace dsp
