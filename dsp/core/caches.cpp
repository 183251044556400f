#include "dsp/core/caches.h"

#include "dsp/dsp.h"

int32_t dsp_free_internal(void) {
  // A cache is released before the caches it was built from. Stops at the first failure.
  using releaser = int32_t (*)();
  constexpr releaser order[] = {dsp::filter::free_fir_work,          dsp::filter::free_sfir_work,
                                dsp::fft::free_bitrev_tables,        dsp::fft::free_dct_work,
                                dsp::fft::free_chirp_state,          dsp::dsp_free_scratch,
                                dsp::fft::free_twiddle_tables,       dsp::window::free_window_cache,
                                dsp::resample::free_fractional_work, dsp::resample::free_converter_work};
  for (const releaser release : order)
    if (release() < 0) return -1;  // GCOVR_EXCL_BR_LINE: none of them fails
  return 0;
}
