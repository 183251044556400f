// The catalogue of windows and the generators.
#include <iterator>
#include <string>

#include "fuzz/block.h"
#include "fuzz/target.h"

namespace fuzz {
namespace {

int32_t name_to_type(play *p) {
  static constexpr const char *known[] = {"", "dsp_window_", "Hann", "FLATTOP", "kaiser1", "gauss", "riemann", "p"};
  std::string name = known[p->in->pick(std::size(known))];
  for (int more = p->in->pick(16); more > 0; --more) name += static_cast<char>(p->in->byte());
  dsp_window_type type = -1;
  const int32_t status = dsp_window_from_str(name.c_str(), &type);
  p->check(type >= 0 && type <= 24, "gives a type that does not exist");
  return status;
}

int32_t type_to_name(play *p) {
  block<char> name(static_cast<std::size_t>(p->in->pick(4)));
  const int32_t size = p->integer();
  const auto there = static_cast<int32_t>(name.size());
  const int32_t status =
      dsp_window_to_str(p->integer(), there > 0 ? name.data() : nullptr, size > there && there > 0 ? there : size);
  p->check(name.is_intact(), "writes beside its buffer");
  return status;
}

constexpr row rows[] = {
    {"dsp_window_from_str", name_to_type, 0},
    {"dsp_window_to_str", type_to_name, 0},
    FUZZ_ROW(dsp_window_scale, rounds),
    FUZZ_ROW(dsp_window2_scale, rounds),
    FUZZ_ROW(dsp_window_enbw, rounds),
    FUZZ_ROW(dsp_window2_enbw, rounds),
    FUZZ_ROW(dspi_window, same_length | rounds),
    FUZZ_ROW(dspi_window2, same_length | rounds),
    FUZZ_ROW(dspi_window_gauss, same_length | rounds),
    FUZZ_ROW(dspi_window_kaiser, same_length),
    FUZZ_ROW(dspi_window_tukey, same_length),
    FUZZ_ROW(dspi_window_sinc, same_length),
    FUZZ_ROW(dspi_window_cos, same_length),
    FUZZ_ROW(dspi_window_fir, same_length | rounds),
};

}  // namespace

const target window = {"window", rows, std::size(rows)};

}  // namespace fuzz
