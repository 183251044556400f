// The process-wide caches. Each family defines its releasers next to the code that fills the cache. A releaser empties
// its cache, so that the next use builds it again, and returns 0 or -1.
#pragma once

#include <cstdint>

namespace dsp {

int32_t dsp_free_scratch();  // scratch output and scratch state

namespace filter {
int32_t free_fir_work();   // work signals and spectra of the transform route
int32_t free_sfir_work();  // the filter expanded from its half
}  // namespace filter

namespace fft {
int32_t free_bitrev_tables();   // the two caches of bit-reversal lists
int32_t free_dct_work();        // work signal and rotation table of the cosine transform
int32_t free_chirp_state();     // chirp and filter spectrum of the any-length transform
int32_t free_twiddle_tables();  // twiddle tables
}  // namespace fft

namespace window {
int32_t free_window_cache();  // generated windows
}

namespace resample {
int32_t free_fractional_work();  // work signals of the fractional stage
int32_t free_converter_work();   // outputs of that stage on their way through the converter
}  // namespace resample

}  // namespace dsp
