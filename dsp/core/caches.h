// The process-wide caches. Each family defines the releasers of its own, next to the code that fills them; a releaser
// leaves its cache as it was at load time, so that the next use builds it again, and returns 0 or -1.
#pragma once

#include <cstdint>

namespace dsp {

std::int32_t free_fir_work();        // filter: work signals and spectra of the transform route
std::int32_t free_sfir_work();       // filter: the filter expanded from its half
std::int32_t free_bitrev_tables();   // fft: the two caches of bit-reversal lists
std::int32_t free_dct_work();        // fft: work signal and rotation table of the cosine transform
std::int32_t free_chirp_state();     // fft: chirp and filter spectrum of the any-length transform
std::int32_t dsp_free_scratch();     // core: scratch output and scratch state
std::int32_t free_twiddle_tables();  // fft: twiddle tables
std::int32_t free_window_cache();    // window: generated windows
std::int32_t free_kernel_rows();     // resample: work signal of the fractional stage

}  // namespace dsp
