#include "dsp/fft/mixed.h"

#include "dsp/core/caches.h"
#include "dsp/fft/circle.h"
#include "dsp/fft/mixed_kernels.h"
#include "dsp/fft/recent.h"
#include "dsp/fft/work_memory.h"

namespace dsp::fft {

struct mixed_entry {
  const mixed_kernel_set *kernels;
  mixed_plan plan;
  int64_t area;    // doubles
  int64_t buffer;  // doubles
};

namespace {

recent<mixed_entry> plans;
work_memory mixed_memory;

constexpr int64_t doubles_to_cache_line = 8;

constexpr int64_t rounded_up(int64_t n) { return (n + doubles_to_cache_line - 1) & -doubles_to_cache_line; }

// Divides a plan's block of memory into tables; without a block, counts the doubles that it must hold.
struct carver {
  double *at;
  int64_t doubles;

  double *take(int64_t count) {
    double *const piece = at;
    if (at != nullptr) at += rounded_up(count);
    doubles += rounded_up(count);
    return piece;
  }

  uint32_t *take_numbers(int64_t count) { return reinterpret_cast<uint32_t *>(take((count + 1) / 2)); }
};

struct table_filler {
  const circle &roots_of_n;
  int32_t n;
  bool in_pairs;

  int32_t values_of_lane() const { return in_pairs ? 4 : root_values; }

  void put(int64_t k, int32_t spacing, double *to) const {
    const root r = roots_of_n[k];
    to[0] = r.cos;
    to[spacing] = r.sin;
  }

  void put_lane(int64_t k, int32_t lanes, int32_t lane, double *to) const {
    if (!in_pairs) return put(k, lanes, to + lane);
    const root r = roots_of_n[k];
    double *const cos = to + 2 * lane;
    double *const sin = cos + 2 * lanes;
    cos[0] = cos[1] = r.cos;
    sin[0] = r.sin;
    sin[1] = -r.sin;
  }

  // The roots exp(-2 pi i j k/length), k = 1 .. radix - 1, for j below length/radix.
  double *put_pass(int32_t length, int32_t radix, double *to) const {
    const int64_t step = n / length;
    for (int64_t j = 0; j < length / radix; ++j)
      for (int64_t k = 1; k < radix; ++k, to += root_values) put(j * k * step, 1, to);
    return to;
  }
};

// The lowest frequency in a block of the last pass: the block's number in mixed radix, its digits reversed.
uint32_t lowest_frequency(const mixed_part &part, int32_t block) {
  int32_t blocks = part.last_blocks;
  int32_t weight = 1;
  int32_t frequency = 0;
  for (int32_t i = 0; i + 1 < part.passes; ++i) {
    blocks /= part.radix[i];
    frequency += block / blocks * weight;
    block %= blocks;
    weight *= part.radix[i];
  }
  return static_cast<uint32_t>(frequency);
}

int64_t roots_in_passes(const mixed_part &part) {
  int64_t count = 0;
  int32_t length = part.n;
  for (int32_t i = 0; i + 1 < part.passes; ++i) {
    count += length - length / part.radix[i];
    length /= part.radix[i];
  }
  return count;
}

// Where the results of `copies` neighbouring transforms go: `apart` from one transform to the next, `unit` from one
// frequency to the next.
struct part_layout {
  int32_t copies;
  uint32_t apart;
  uint32_t unit;
};

// Cosines and sines for the radices that have no butterfly.
void build_circles(mixed_part *part, int32_t lanes, const table_filler &fill, carver *memory) {
  for (int32_t i = 0; i < part->passes; ++i) {
    const int32_t p = part->radix[i];
    if (has_butterfly(p, lanes)) continue;
    double *to = memory->take(2 * int64_t{p});
    part->circle[i] = to;
    for (int64_t k = 0; to != nullptr && k < p; ++k, to += 2) {
      const root r = fill.roots_of_n[k * (fill.n / p)];
      to[0] = r.cos;
      to[1] = r.sin;
    }
  }
}

void build_part(mixed_part *part, const part_layout &layout, const table_filler &fill, carver *memory) {
  double *roots = memory->take(roots_in_passes(*part) * root_values);
  const int32_t blocks = part->last_blocks;
  uint32_t *order = memory->take_numbers(int64_t{blocks} * layout.copies);
  if (memory->at == nullptr) return;
  part->roots = roots;
  part->order = order;
  int32_t length = part->n;
  for (int32_t i = 0; i + 1 < part->passes; ++i) {
    roots = fill.put_pass(length, part->radix[i], roots);
    length /= part->radix[i];
  }
  for (int32_t copy = 0; copy < layout.copies; ++copy)
    for (int32_t b = 0; b < blocks; ++b)
      *order++ = static_cast<uint32_t>(copy) * layout.apart + lowest_frequency(*part, b) * layout.unit;
}

// Pairs hold their samples in order, points in the order of load_pairs.
int32_t sample_in_lane(int32_t lanes, bool in_pairs, int32_t l) {
  return lanes < 4 || in_pairs ? l : l % 2 * (lanes / 2) + l / 2;
}

// For each lane the index of its root, and the step to the root of the next result of the butterfly.
struct lane_indices {
  int64_t at[8];
  int64_t step[8];

  void put_vectors(int32_t count, int32_t lanes, const table_filler &fill, double **to) {
    for (int32_t leg = 0; leg < count; ++leg, *to += lanes * fill.values_of_lane()) {
      for (int32_t l = 0; l < lanes; ++l) {
        fill.put_lane(at[l], lanes, l, *to);
        at[l] += step[l];
        if (at[l] >= fill.n) at[l] -= fill.n;
      }
    }
  }
};

// The roots between columns and rows for one vector of columns: a column in each lane or, transposed, W frequencies of
// one column.
double *put_columns(const mixed_plan &plan, int64_t column, const table_filler &fill, double *to) {
  const int32_t lanes = plan.lanes;
  const int32_t blocks = plan.columns.last_blocks;
  const int32_t radix = plan.columns.n / blocks;
  const bool transposed = plan.transposed != 0;
  for (int32_t b = 0; b < blocks; ++b) {
    const int64_t k = plan.columns.order[b] / (transposed ? static_cast<uint32_t>(plan.rows.n) : 1);
    lane_indices indices;
    for (int32_t l = 0; l < lanes; ++l) {
      const int64_t sample = sample_in_lane(lanes, fill.in_pairs, l);
      indices.at[l] = (transposed ? column * (sample + lanes * k) : (column + sample) * k) % fill.n;
      indices.step[l] = (transposed ? column * lanes * blocks : (column + sample) * blocks) % fill.n;
    }
    indices.put_vectors(radix, lanes, fill, &to);
  }
  return to;
}

// The roots between columns and rows, in the order in which the passes read them.
void build_middle(const mixed_plan &plan, const table_filler &fill, double *to) {
  const int32_t lanes = plan.lanes;
  const int32_t n2 = plan.rows.n;
  for (int32_t c = 0; c < n2; c += lanes) {
    const int32_t first = c < n2 - lanes ? c : n2 - lanes;
    for (int32_t i = 0; i < (plan.transposed != 0 ? lanes : 1); ++i) to = put_columns(plan, first + i, fill, to);
  }
}

// Fills the tables and sets the plan's pointers to them; without a block, only counts their size.
void build_tables(mixed_plan *plan, const table_filler &fill, carver *memory) {
  const int32_t lanes = plan->lanes;
  const auto n2 = static_cast<uint32_t>(plan->rows.n);
  build_circles(&plan->rows, lanes, fill, memory);
  build_circles(&plan->columns, lanes, fill, memory);
  build_part(&plan->rows, {1, 0, 1}, fill, memory);
  if (lanes < 2) return;
  const bool transposed = plan->transposed != 0;
  build_part(&plan->columns, transposed ? part_layout{lanes, 1, n2} : part_layout{1, 0, 1}, fill, memory);
  const int64_t vectors = (int64_t{n2} + lanes - 1) / lanes * plan->n1;
  double *first = memory->take(transposed ? (plan->n1 - plan->n1 / lanes) * int64_t{root_values} : 0);
  double *middle = memory->take(vectors * lanes * fill.values_of_lane());
  if (memory->at == nullptr) return;
  plan->first = first;
  plan->middle = middle;
  if (transposed) fill.put_pass(plan->n1, lanes, first);
  build_middle(*plan, fill, middle);
}

void set_part(mixed_part *part, int32_t n, int32_t lanes) {
  part->n = n;
  part->passes = choose_radices(n, lanes, part->radix);
  part->last_blocks = part->passes > 0 ? n / part->radix[part->passes - 1] : 1;
}

mixed_plan make_plan(int32_t n, const mixed_shape &shape) {
  mixed_plan plan = {};
  plan.lanes = shape.lanes;
  plan.transposed = shape.transposed;
  plan.n1 = shape.n1;
  set_part(&plan.columns, shape.transposed ? shape.n1 / shape.lanes : shape.n1, shape.lanes);
  set_part(&plan.rows, n / shape.n1, shape.lanes);
  return plan;
}

int64_t key_of(int32_t n) { return int64_t{n} * 4 + static_cast<int32_t>(active_isa()); }

}  // namespace

const mixed_entry *make_mixed(int32_t n, const mixed_shape &shape) {
  mixed_plan plan = make_plan(n, shape);
  const mixed_kernel_set &kernels = mixed_kernels_for(plan.lanes);
  circle roots(n);
  const table_filler fill = {roots, n, plan.lanes == kernels.pair_lanes};
  carver memory = {nullptr, 0};
  build_tables(&plan, fill, &memory);
  if (!roots.build()) return nullptr;
  void *block;
  mixed_entry *entry = plans.add(key_of(n), static_cast<uint64_t>(memory.doubles + 1) * sizeof(double), &block);
  if (entry == nullptr) return nullptr;
  memory = {static_cast<double *>(block), 0};
  build_tables(&plan, fill, &memory);
  const int64_t groups = (int64_t{plan.rows.n} + plan.lanes - 1) / plan.lanes;
  const int32_t longest = plan.n1 > plan.rows.n ? plan.n1 : plan.rows.n;
  entry->kernels = &kernels;
  entry->plan = plan;
  entry->area = plan.lanes > 1 ? rounded_up(2 * groups * plan.lanes * plan.n1) : 0;
  entry->buffer = 2 * int64_t{longest} * plan.lanes;
  return entry;
}

void direct_transform(double *x, int32_t n, bool inverse, double scale) {
  mixed_kernels_for(1).direct(n, x, scale, inverse);
}

const mixed_entry *find_mixed(int32_t n) { return plans.find(key_of(n)); }

const mixed_entry *find_or_make_mixed(int32_t n) {
  const mixed_entry *entry = find_mixed(n);
  return entry != nullptr ? entry : make_mixed(n, shape_of(n, mixed_kernels().lanes));
}

int32_t mixed_transform(const mixed_entry *entry, double *x, bool inverse, double scale) {
  double *const area = entry != nullptr ? mixed_memory.at_least(entry->area + entry->buffer) : nullptr;
  if (area == nullptr) return -1;
  entry->kernels->transform(entry->plan, {area, area + entry->area}, x, scale, inverse);
  return 0;
}

void free_mixed_plans() {
  plans.release();
  mixed_memory.release();
}

}  // namespace dsp::fft
