// Inputs of an operation whose output may sit on the same buffer, and the rule by which such an output is sized.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"

namespace dsp {

inline bool shares_buffer(const dsp_vec &a, const dsp_vec &b) { return a.data == b.data; }

// Where an input's samples are. Made before the output is sized: sizing may move or replace the buffer, and the record
// itself when it is the output.
class operand {
 public:
  operand(const dsp_vec &in, const dsp_vec &out)
      : data_(in.data),
        is_complex_(in.is_complex != 0),
        shared_(shares_buffer(in, out)),
        moves_(shared_ && out.capacity > 0) {}

  bool is_complex() const { return is_complex_; }
  bool is_shared() const { return shared_; }

  // What a shared buffer must keep while it is sized, samples of the operand, whatever the output's record says of it.
  bool keeps_complex() const { return shared_ && is_complex_; }

  // The samples, once the output has been sized. A buffer that the output owned went along with it; one that it
  // borrowed still lies where it was.
  const double *data(const dsp_vec &out) const { return moves_ ? out.data : data_; }

 private:
  const double *data_;
  bool is_complex_;
  bool shared_;
  bool moves_;
};

// (a + b)/2 without overflow.
double mean_spacing(double a, double b);

// The two inputs of an element-wise operation, ready to be read while the output is written: samples of equal width
// front to back, an output wider than an input back to front.
struct operands {
  const double *a;
  const double *b;
  bool a_complex;
  bool b_complex;
  std::int32_t length;
};

// Gives `out` the inputs' length, the mean of their dx, and makes it complex if either is. -1: the lengths differ
// (nothing touched) or there is no memory.
int32_t dspb_prepare_output(const dsp_vec &a, const dsp_vec &b, dsp_vec *out, operands *ready);

// The same with the representation given.
int32_t dspb_prepare_output(const dsp_vec &a, const dsp_vec &b, bool out_complex, dsp_vec *out, operands *ready);

}  // namespace dsp
