#include "dsp/poly/zero_search.h"

#include <algorithm>
#include <cmath>

#include "dsp/math/complex.h"
#include "dsp/math/constants.h"
#include "dsp/math/double_double.h"

namespace dsp::poly {
namespace {

// An approximation is found when the value computed in doubles is below n `noise`, n the degree. As its rounding error
// is at most n (1 + sqrt 5)/2 epsilon, the true value is then below n `good_enough`.
constexpr double noise = 2.3 * epsilon;
constexpr double good_enough = 4.0 * epsilon;
constexpr double twofold_noise = 0x1p-102;

constexpr double small_step = 0x1p-14;  // relative; the next step is about its square

constexpr int most_sweeps = 2000;
constexpr int most_refinements = 60;

dsp_complex scaled(dsp_complex z, int64_t exponent) {
  if (exponent == 0) return z;
  const int e = static_cast<int>(std::clamp<int64_t>(exponent, -5000, 5000));
  if (std::abs(e) > 1000) return {std::ldexp(z.re, e), std::ldexp(z.im, e)};
  const double power = std::ldexp(1.0, e);
  return {z.re * power, z.im * power};
}

// Limits the coordinates of far zeros, whose squares would overflow.
double not_far(double x) { return std::clamp(x, -0x1p500, 0x1p500); }

// The values were computed at w = 1/z, rounded. The value at the exact 1/z differs by the slope times w (1 - w z).
void undo_rounding_of_inverse(point_block *b, int count) {
  for (int i = 0; i < count; ++i) {
    const double_double re =
        double_double::product(b->re[i], b->at_re[i]) - double_double::product(b->im[i], b->at_im[i]);
    const double_double im =
        double_double::product(b->re[i], b->at_im[i]) + double_double::product(b->im[i], b->at_re[i]);
    const dsp_complex residual = {(double_double{1.0, 0.0} - re).hi, -im.hi};
    const dsp_complex change = product({b->slope_re[i], b->slope_im[i]}, product({b->re[i], b->im[i]}, residual));
    b->value_re[i] += change.re;
    b->value_im[i] += change.im;
  }
}

}  // namespace

zero_search::zero_search(const polynomial &p)
    : p_(p),
      polygon_(p),
      groups_(p.degree()),
      zeros_(p.degree()),
      numbers_(5 * (p.degree() + int64_t{1})),
      re_(numbers_.get()),
      im_(numbers_.get(p.degree() + int64_t{1})),
      modulus_(numbers_.get(2 * (p.degree() + int64_t{1}))),
      x_re_(numbers_.get(3 * (p.degree() + int64_t{1}))),
      x_im_(numbers_.get(4 * (p.degree() + int64_t{1}))),
      open_(p.degree()) {}

bool zero_search::is_valid() const { return polygon_.is_valid() && groups_ && zeros_ && numbers_; }

void zero_search::run() {
  for (int32_t e = 0; e < polygon_.edges(); e = groups_[group_count_ - 1].end_edge) {
    groups_[group_count_] = polygon_.group_from(e);
    start(group_count_++);
  }
  for (int sweep = 0; open_ > 0 && sweep < most_sweeps; ++sweep)  // GCOVR_EXCL_BR_LINE: most_sweeps is a safeguard
    for (int32_t g = 0; g < group_count_; ++g) pass(g, state::searched);
  for (int32_t i = 0; i < p_.degree(); ++i) zeros_[i].now = state::found;
  refine_all(state::found, p_.degree());
}

dsp_complex zero_search::zero(int32_t i) const { return scaled(zeros_[i].z, exponent(zeros_[i].group)); }

void zero_search::move_to_axis(int32_t i) {
  approximation &zero = zeros_[i];
  zero.z.im = 0.0;
  zero.has_kept = false;
  zero.now = state::on_axis;
  if (zero.group == entered_)
    x_im_[i] = 0.0;
  else
    entered_ = -1;
}

void zero_search::refine_moved(int32_t count) { refine_all(state::on_axis, count); }

// Starts evenly on the circle of each edge. The circles are turned against each other and against the real axis, so
// that the start has no symmetry that the iteration would keep.
void zero_search::start(int32_t group) {
  const zero_group &g = groups_[group];
  for (int32_t e = g.first_edge; e < g.end_edge; ++e) {
    const double radius = std::exp2(polygon_.log_radius(e) - g.exponent);
    const double turn = two_pi * polygon_.begin(e) / p_.degree() + 0.7;
    const double step = two_pi / (polygon_.end(e) - polygon_.begin(e));
    for (int32_t i = polygon_.begin(e); i < polygon_.end(e); ++i) {
      const double angle = turn + step * (i - polygon_.begin(e));
      zeros_[i] = {{radius * std::cos(angle), radius * std::sin(angle)}, {}, false, group, state::searched};
    }
  }
}

// Makes a group the current one: scales the coefficients, so that the largest term at its radius is about 1, and all
// zeros.
void zero_search::enter(int32_t group) {
  if (entered_ == group) return;
  entered_ = group;
  const auto largest = static_cast<int64_t>(std::ceil(polygon_.log_largest(groups_[group])));
  for (int32_t k = 0; k <= p_.degree(); ++k) {
    const dsp_complex c = scaled(p_[k], exponent(group) * k - largest);
    re_[k] = c.re;
    im_[k] = c.im;
    modulus_[k] = std::sqrt(squared_modulus(c));
  }
  for (int32_t i = 0; i < p_.degree(); ++i) {
    const dsp_complex x = scaled(zeros_[i].z, exponent(zeros_[i].group) - exponent(group));
    x_re_[i] = not_far(x.re);
    x_im_[i] = not_far(x.im);
  }
}

// Moves the wanted zeros of a group once.
void zero_search::pass(int32_t group, state wanted) {
  for (int32_t i = 0; i < p_.degree(); ++i) {
    const approximation &zero = zeros_[i];
    if (zero.group != group || zero.now != wanted) continue;
    enter(group);
    const bool is_outside = squared_modulus(zero.z) > 1.0;
    add(i, is_outside);
    if (sides_[is_outside].count == block_size) step_batch(is_outside, wanted);
  }
  for (const bool is_outside : {false, true})
    if (sides_[is_outside].count > 0) step_batch(is_outside, wanted);
}

void zero_search::add(int32_t i, bool is_outside) {
  const dsp_complex z = zeros_[i].z;
  const dsp_complex w = is_outside ? quotient({1.0, 0.0}, z) : z;
  batch &b = sides_[is_outside];
  const int lane = b.count++;
  b.index[lane] = i;
  b.points.at_re[lane] = z.re;
  b.points.at_im[lane] = z.im;
  b.points.re[lane] = w.re;
  b.points.im[lane] = w.im;
  b.points.modulus[lane] = std::sqrt(squared_modulus(w));
}

// Outside the unit circle the polynomial of 1/z is evaluated.
void zero_search::step_batch(bool is_outside, state wanted) {
  const zero_kernel_set &kernels = zero_kernels();
  const int64_t first = is_outside ? 0 : p_.degree();
  const coefficient_run c = {re_ + first, im_ + first, modulus_ + first, is_outside ? 1 : -1, p_.degree()};
  batch &b = sides_[is_outside];
  kernels.evaluate(c, &b.points, b.count);
  if (wanted != state::searched) {
    kernels.evaluate_twofold(c, &b.points, b.count);
    if (is_outside) undo_rounding_of_inverse(&b.points, b.count);
  }
  kernels.add_inverse_distances(x_re_, x_im_, p_.degree(), &b.points, b.count);
  for (int lane = 0; lane < b.count; ++lane) {
    const result r = step_of(is_outside, lane);
    if (wanted == state::searched)
      search(r);
    else
      refine(r);
  }
  b.count = 0;
}

// The step is 1/(p'/p - s) with Aberth's sum s. With w = 1/z and p(z) = z^n q(w), p'/p = w (n - w q'/q).
zero_search::result zero_search::step_of(bool is_outside, int lane) const {
  const batch &b = sides_[is_outside];
  const point_block &at = b.points;
  const double scale = 1.0 / at.terms[lane];
  const dsp_complex value = {at.value_re[lane] * scale, at.value_im[lane] * scale};
  const dsp_complex aberth = {at.aberth_re[lane], at.aberth_im[lane]};
  const dsp_complex w = {at.re[lane], at.im[lane]};
  dsp_complex slope = {at.slope_re[lane] * scale, at.slope_im[lane] * scale};
  if (is_outside) {
    const double n = p_.degree();
    const dsp_complex inner = product(w, slope);
    slope = product(w, n * value - inner);
  }
  const dsp_complex repulsion = product(value, aberth);
  const dsp_complex step = quotient(value, slope - repulsion);
  return {b.index[lane], std::sqrt(squared_modulus(value)), step, std::sqrt(squared_modulus(aberth))};
}

void zero_search::move(int32_t i, dsp_complex step) {
  dsp_complex &z = zeros_[i].z;
  z = z - step;
  x_re_[i] = z.re;
  x_im_[i] = z.im;
}

// A zero that leaves the range of its group joins the group whose range it enters.
void zero_search::change_group(approximation *zero) const {
  const int32_t old = zero->group;
  const double log_modulus = 0.5 * std::log2(squared_modulus(zero->z)) + groups_[old].exponent;
  while (zero->group > 0 && log_modulus < groups_[zero->group - 1].log_border) --zero->group;
  while (log_modulus > groups_[zero->group].log_border) ++zero->group;
  zero->z = scaled(zero->z, exponent(old) - exponent(zero->group));
}

void zero_search::close(int32_t i, state now) {
  zeros_[i].now = now;
  --open_;
}

// A zero is found when its value is noise or its last step was small.
void zero_search::search(const result &r) {
  approximation &zero = zeros_[r.index];
  const bool is_near = squared_modulus(r.step) <= small_step * small_step * squared_modulus(zero.z);
  const bool is_noise = r.residue <= noise * p_.degree();
  if (!is_noise) move(r.index, r.step);
  if (is_noise || is_near) close(r.index, state::found);
  if (group_count_ > 1) change_group(&zero);
}

// A zero is refined when the next step would be lost in rounding, or its value is noise even with twice the digits.
void zero_search::refine(const result &r) {
  approximation &zero = zeros_[r.index];
  const bool is_good = r.residue <= good_enough * p_.degree();
  if (is_good) zero.kept = zero.z;
  zero.has_kept = zero.has_kept || is_good;
  const dsp_complex step = {r.step.re, zero.now == state::on_axis ? 0.0 : r.step.im};
  const double length = std::sqrt(squared_modulus(step));
  const double modulus = std::sqrt(squared_modulus(zero.z));
  const bool is_last = length * p_.degree() <= 0x1p-26 * modulus && r.aberth * length * length <= 0x1p-55 * modulus;
  const bool is_noise = r.residue <= twofold_noise * p_.degree();
  if (!is_noise) move(r.index, step);
  if (is_good && (is_last || is_noise)) close(r.index, state::refined);
}

void zero_search::refine_all(state wanted, int32_t count) {
  open_ = count;
  for (int round = 0; open_ > 0 && round < most_refinements; ++round)
    for (int32_t g = 0; g < group_count_; ++g) pass(g, wanted);
  for (int32_t i = 0; i < p_.degree(); ++i) {
    approximation &zero = zeros_[i];
    if (zero.now == wanted && zero.has_kept) zero.z = zero.kept;  // GCOVR_EXCL_BR_LINE: a small residue was met
    if (zero.now == wanted) zero.now = state::refined;
  }
}

}  // namespace dsp::poly
