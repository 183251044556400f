// Filters, direct and by transforms, against sums in wide numbers.
#include "bench/accuracy/report.h"
#include "bench/noise.h"

namespace accuracy {

void filters() {
  heading(
      "Filters",
      "`dspd_fir` with random taps on 20 blocks of noise, the relative error in the L2 norm in units of 1e-16. Up to "
      "45 taps it sums directly, longer filters go through transforms; beside it the plain loop.");
  table({"taps, block", "ours", "plain loop"});
  for (const auto &[taps, block] : {std::pair<std::size_t, std::size_t>{16, 1024},
                                    {45, 1024},
                                    {64, 1024},
                                    {256, 1024},
                                    {1024, 1024},
                                    {1024, 4096}}) {
    doubles h = noise(taps, 31);
    const std::size_t blocks = 20;
    const doubles in = noise(blocks * block, 32);
    dsp_vec out, state;
    const dsp_vec filter = borrow(h);
    dsp_init(&out);
    dsp_init(&state);
    wide wrong = 0, looped = 0, all = 0;
    for (std::size_t b = 0; b < blocks; ++b) {
      doubles part(in.begin() + static_cast<std::ptrdiff_t>(b * block),
                   in.begin() + static_cast<std::ptrdiff_t>((b + 1) * block));
      const dsp_vec v = borrow(part);
      if (dspd_fir(&v, &out, &filter, &state) != 0) break;
      for (std::size_t i = 0; i < block; ++i) {
        wide exact = 0;
        double sum = 0;
        for (std::size_t k = 0; k <= std::min(b * block + i, taps - 1); ++k) {
          exact += static_cast<wide>(h[k]) * in[b * block + i - k];
          sum += h[k] * in[b * block + i - k];
        }
        wrong += (out.data[i] - exact) * (out.data[i] - exact);
        looped += (sum - exact) * (sum - exact);
        all += exact * exact;
      }
    }
    dsp_destroy(&out);
    dsp_destroy(&state);
    row({std::to_string(taps) + ", " + std::to_string(block),
         figure(1e16 * static_cast<double>(std::sqrt(wrong / all))),
         figure(1e16 * static_cast<double>(std::sqrt(looped / all)))});
  }
  held_by("`Fir.IsTheConvolutionInBlocksToo`");
}

}  // namespace accuracy
