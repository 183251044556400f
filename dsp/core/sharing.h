// Who shares a buffer with whom: the one answer to "may the output be the input?".
//
// A routine that reads each sample before it overwrites it takes `operand`s, and works in place. A routine that still
// reads its inputs after it has begun to write takes an `output`, which writes to a scratch signal where needed.
#pragma once

#include <cstdint>
#include <initializer_list>

#include "dsp/dsp.h"

namespace dsp {

// Whether writing one record may change the other.
inline bool shares_buffer(const dsp_vec &a, const dsp_vec &b) {
  return &a == &b || (a.data != nullptr && a.data == b.data);
}

// The same where `a` may be null, which shares nothing.
inline bool shares_buffer(const dsp_vec *a, const dsp_vec *b) { return a != nullptr && shares_buffer(*a, *b); }

// Whether the samples of `view` begin inside the buffer of `whole`, which sizing `whole` may move away.
bool lies_within(const dsp_vec &view, const dsp_vec &whole);

// An input of a routine that works in place. Made before the output is sized, which may move or replace the buffer, and
// the record itself when it is the output.
class operand {
 public:
  operand(const dsp_vec &in, const dsp_vec &out)
      : data_(in.data),
        is_complex_(in.is_complex != 0),
        shared_(shares_buffer(in, out)),
        moves_(shared_ && out.capacity > 0) {}

  bool is_complex() const { return is_complex_; }

  // The samples, once the output has been sized. A buffer that the output owned went along with it; one that it
  // borrowed still lies where it was.
  const double *data(const dsp_vec &out) const { return moves_ ? out.data : data_; }

 private:
  friend int32_t size_over(dsp_vec *out, int32_t held, const operand &a, const operand &b);

  const double *data_;
  bool is_complex_;
  bool shared_;
  bool moves_;
};

// Sizes `out`, whose length and representation are set, and keeps the `held` samples of the operands that share its
// buffer, whatever the record of `out` says of them. -1: no memory.
int32_t size_over(dsp_vec *out, int32_t held, const operand &a, const operand &b);

// (a + b)/2 without overflow.
double mean_spacing(double a, double b);

// The two inputs of an element-wise operation, ready to be read while the output is written: samples of equal width
// front to back, an output wider than an input back to front.
struct operands {
  const double *a;
  const double *b;
  bool a_complex;
  bool b_complex;
  int32_t length;
};

// Gives `out` the inputs' length, the mean of their dx, and makes it complex if either is. -1: the lengths differ
// (nothing touched) or there is no memory.
int32_t dspb_prepare_output(const dsp_vec &a, const dsp_vec &b, dsp_vec *out, operands *ready);

// The same with the representation given.
int32_t dspb_prepare_output(const dsp_vec &a, const dsp_vec &b, bool out_complex, dsp_vec *out, operands *ready);

// The output of a routine that reads its inputs while it writes. Where one of them shares the output's buffer, the
// result is made in the scratch signal, and commit() copies it to the caller's record; without commit() the caller's
// record stays as it was. There is only one scratch signal: while an `output` exists, no other routine that uses one
// may be called.
class output {
 public:
  output(dsp_vec *callers, std::initializer_list<const dsp_vec *> inputs);

  dsp_vec *get() const { return written_; }
  dsp_vec *operator->() const { return written_; }
  dsp_vec &operator*() const { return *written_; }

  // Sizes the signal; its contents are undefined. -1: no memory.
  int32_t shape(int32_t length, bool is_complex, double dx);

  int32_t commit() const { return written_ == callers_ ? 0 : dsp_copy(callers_, written_); }

 private:
  dsp_vec *callers_;
  dsp_vec *written_;
};

}  // namespace dsp
