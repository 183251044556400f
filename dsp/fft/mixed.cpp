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
  std::int64_t area;    // doubles
  std::int64_t buffer;  // doubles
};

namespace {

recent<mixed_entry> plans;
work_memory mixed_memory;

constexpr std::int64_t doubles_to_cache_line = 8;

constexpr std::int64_t rounded_up(std::int64_t n) { return (n + doubles_to_cache_line - 1) & -doubles_to_cache_line; }

// Hands out the block of a plan piece by piece, or counts what it has to hold.
struct carver {
  double *at;
  std::int64_t doubles;

  double *take(std::int64_t count) {
    double *const piece = at;
    if (at != nullptr) at += rounded_up(count);
    doubles += rounded_up(count);
    return piece;
  }

  std::uint32_t *take_numbers(std::int64_t count) { return reinterpret_cast<std::uint32_t *>(take((count + 1) / 2)); }
};

struct table_filler {
  const circle &roots_of_n;
  std::int32_t n;
  std::int32_t root_values;

  void put(std::int64_t k, std::int32_t spacing, double *to) const {
    const root r = roots_of_n[k];
    to[0] = r.cos;
    to[spacing] = root_values == 2 ? r.sin : -(r.cos + r.sin);
    if (root_values == 3) to[2 * spacing] = r.sin - r.cos;
  }

  // The roots j k of `length`, k = 1 .. radix - 1, for j below length/radix.
  double *put_pass(std::int32_t length, std::int32_t radix, double *to) const {
    const std::int64_t step = n / length;
    for (std::int64_t j = 0; j < length / radix; ++j)
      for (std::int64_t k = 1; k < radix; ++k, to += root_values) put(j * k * step, 1, to);
    return to;
  }
};

std::int32_t last_radix(const mixed_part &part) { return part.passes > 0 ? part.radix[part.passes - 1] : 1; }

// Blocks of the last pass: their digits, the radices' remainders, in reverse are the lowest frequency.
std::uint32_t lowest_frequency(const mixed_part &part, std::int32_t block) {
  std::int32_t blocks = part.n / last_radix(part);
  std::int32_t weight = 1;
  std::int32_t frequency = 0;
  for (std::int32_t i = 0; i + 1 < part.passes; ++i) {
    blocks /= part.radix[i];
    frequency += block / blocks * weight;
    block %= blocks;
    weight *= part.radix[i];
  }
  return static_cast<std::uint32_t>(frequency);
}

std::int64_t roots_in_passes(const mixed_part &part) {
  std::int64_t count = 0;
  std::int32_t length = part.n;
  for (std::int32_t i = 0; i + 1 < part.passes; ++i) {
    count += length - length / part.radix[i];
    length /= part.radix[i];
  }
  return count;
}

// `copies` transforms side by side, the order of each `apart` units from that of the one before and `unit` units in a
// step of frequency.
struct part_layout {
  std::int32_t copies;
  std::uint32_t apart;
  std::uint32_t unit;
};

// Cosines and sines for the radices that have no butterfly.
void build_circles(mixed_part *part, std::int32_t lanes, const table_filler &fill, carver *memory) {
  for (std::int32_t i = 0; i < part->passes; ++i) {
    const std::int32_t p = part->radix[i];
    if (has_butterfly(p, lanes)) continue;
    double *to = memory->take(2 * std::int64_t{p});
    part->circle[i] = to;
    for (std::int64_t k = 0; to != nullptr && k < p; ++k, to += 2) {
      const root r = fill.roots_of_n[k * (fill.n / p)];
      to[0] = r.cos;
      to[1] = r.sin;
    }
  }
}

void build_part(mixed_part *part, const part_layout &layout, const table_filler &fill, carver *memory) {
  double *roots = memory->take(roots_in_passes(*part) * fill.root_values);
  const std::int32_t blocks = part->n / last_radix(*part);
  std::uint32_t *order = memory->take_numbers(std::int64_t{blocks} * layout.copies);
  if (memory->at == nullptr) return;
  part->roots = roots;
  part->order = order;
  std::int32_t length = part->n;
  for (std::int32_t i = 0; i + 1 < part->passes; ++i) {
    roots = fill.put_pass(length, part->radix[i], roots);
    length /= part->radix[i];
  }
  for (std::int32_t copy = 0; copy < layout.copies; ++copy)
    for (std::int32_t b = 0; b < blocks; ++b)
      *order++ = static_cast<std::uint32_t>(copy) * layout.apart + lowest_frequency(*part, b) * layout.unit;
}

std::int32_t sample_in_lane(std::int32_t lanes, std::int32_t l) { return lanes < 4 ? l : l % 2 * (lanes / 2) + l / 2; }

// Indices of the roots for the lanes of a vector, and how far they move from one result of a butterfly to the next.
struct lane_indices {
  std::int64_t at[8];
  std::int64_t step[8];

  void put_vectors(std::int32_t count, std::int32_t lanes, const table_filler &fill, double **to) {
    for (std::int32_t leg = 0; leg < count; ++leg, *to += lanes * fill.root_values) {
      for (std::int32_t l = 0; l < lanes; ++l) {
        fill.put(at[l], lanes, *to + l);
        at[l] += step[l];
        if (at[l] >= fill.n) at[l] -= fill.n;
      }
    }
  }
};

// The roots that one run of the columns' passes meets: of W columns in the lanes, or of one with W frequencies there.
double *put_columns(const mixed_plan &plan, std::int64_t column, const table_filler &fill, double *to) {
  const std::int32_t lanes = plan.lanes;
  const std::int32_t radix = last_radix(plan.columns);
  const std::int32_t blocks = plan.columns.n / radix;
  const bool transposed = plan.transposed != 0;
  for (std::int32_t b = 0; b < blocks; ++b) {
    const std::int64_t k = plan.columns.order[b] / (transposed ? static_cast<std::uint32_t>(plan.rows.n) : 1);
    lane_indices indices;
    for (std::int32_t l = 0; l < lanes; ++l) {
      const std::int64_t sample = sample_in_lane(lanes, l);
      indices.at[l] = (transposed ? column * (sample + lanes * k) : (column + sample) * k) % fill.n;
      indices.step[l] = (transposed ? column * lanes * blocks : (column + sample) * blocks) % fill.n;
    }
    indices.put_vectors(radix, lanes, fill, &to);
  }
  return to;
}

// All of them, in the order in which the passes do.
void build_middle(const mixed_plan &plan, const table_filler &fill, double *to) {
  const std::int32_t lanes = plan.lanes;
  const std::int32_t n2 = plan.rows.n;
  for (std::int32_t c = 0; c < n2; c += lanes) {
    const std::int32_t first = c < n2 - lanes ? c : n2 - lanes;
    for (std::int32_t i = 0; i < (plan.transposed != 0 ? lanes : 1); ++i) to = put_columns(plan, first + i, fill, to);
  }
}

// Points the plan to its tables in the block, and fills them. Without a block: counts.
void build_tables(mixed_plan *plan, const table_filler &fill, carver *memory) {
  const std::int32_t lanes = plan->lanes;
  const auto n2 = static_cast<std::uint32_t>(plan->rows.n);
  build_circles(&plan->rows, lanes, fill, memory);
  build_circles(&plan->columns, lanes, fill, memory);
  build_part(&plan->rows, {1, 0, 1}, fill, memory);
  if (lanes < 2) return;
  const bool transposed = plan->transposed != 0;
  build_part(&plan->columns, transposed ? part_layout{lanes, 1, n2} : part_layout{1, 0, 1}, fill, memory);
  const std::int64_t vectors = (std::int64_t{n2} + lanes - 1) / lanes * plan->n1;
  double *first = memory->take(transposed ? (plan->n1 - plan->n1 / lanes) * std::int64_t{fill.root_values} : 0);
  double *middle = memory->take(vectors * lanes * fill.root_values);
  if (memory->at == nullptr) return;
  plan->first = first;
  plan->middle = middle;
  if (transposed) fill.put_pass(plan->n1, lanes, first);
  build_middle(*plan, fill, middle);
}

void set_part(mixed_part *part, std::int32_t n, std::int32_t lanes) {
  part->n = n;
  part->passes = choose_radices(n, lanes, part->radix);
}

mixed_plan make_plan(std::int32_t n, const mixed_shape &shape) {
  mixed_plan plan = {};
  plan.lanes = shape.lanes;
  plan.transposed = shape.transposed;
  plan.n1 = shape.n1;
  set_part(&plan.columns, shape.transposed ? shape.n1 / shape.lanes : shape.n1, shape.lanes);
  set_part(&plan.rows, n / shape.n1, shape.lanes);
  return plan;
}

std::int64_t key_of(std::int32_t n) { return std::int64_t{n} * 4 + static_cast<std::int32_t>(active_isa()); }

const mixed_entry *add_plan(std::int32_t n) {
  const mixed_shape shape = shape_of(n, mixed_kernels().lanes);
  mixed_plan plan = make_plan(n, shape);
  const mixed_kernel_set &kernels = plan.lanes < 8 ? narrow_mixed_kernels() : mixed_kernels();
  circle roots(n);
  const table_filler fill = {roots, n, kernels.root_values};
  carver memory = {nullptr, 0};
  build_tables(&plan, fill, &memory);
  if (!roots.build()) return nullptr;
  void *block;
  mixed_entry *entry = plans.add(key_of(n), static_cast<std::uint64_t>(memory.doubles + 1) * sizeof(double), &block);
  if (entry == nullptr) return nullptr;
  memory = {static_cast<double *>(block), 0};
  build_tables(&plan, fill, &memory);
  const std::int64_t groups = (std::int64_t{plan.rows.n} + plan.lanes - 1) / plan.lanes;
  const std::int32_t longest = plan.n1 > plan.rows.n ? plan.n1 : plan.rows.n;
  *entry = {&kernels, plan, plan.lanes > 1 ? rounded_up(2 * groups * plan.lanes * plan.n1) : 0,
            2 * std::int64_t{longest} * plan.lanes};
  return entry;
}

}  // namespace

void direct_transform(double *x, std::int32_t n, bool inverse, double scale) {
  narrow_mixed_kernels().direct(n, x, scale, inverse);
}

const mixed_entry *find_mixed(std::int32_t n) { return plans.find(key_of(n)); }

const mixed_entry *find_or_make_mixed(std::int32_t n) {
  const mixed_entry *entry = find_mixed(n);
  return entry != nullptr ? entry : add_plan(n);
}

std::int32_t mixed_transform(const mixed_entry *entry, double *x, bool inverse, double scale) {
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
