// The flags shared by the spectrum routines, decoded once.
#pragma once

#include <cstdint>

#include "dsp/dsp.h"

namespace dsp::spectrum {

struct spectrum_flags {
  bool inverse;
  bool two_sided;       // no factor for the missing side, complex transform
  bool sum;             // scaled as a sum over the full record, not as a mean
  bool unwindowed;      // the data are windowed already (forward)
  bool centred;         // the record is centred: halves swapped around the transform
  bool from_two_sided;  // the spectrum given is centred and complex (inverse)
  bool odd;             // the record had odd length (inverse, any length)
  bool raw;             // the transform only
  bool swaps;           // halves are swapped in the time domain

  spectrum_flags(int32_t word, dsp_window_type window)
      : inverse((word & DSP_SPECTRUM_INVERSE) != 0),
        two_sided((word & DSP_SPECTRUM_TWO_SIDED) != 0),
        sum((word & DSP_SPECTRUM_SUM) != 0),
        unwindowed((word & DSP_SPECTRUM_UNWINDOWED) != 0),
        centred((word & DSP_SPECTRUM_CENTRED) != 0),
        from_two_sided((word & DSP_SPECTRUM_FROM_TWO_SIDED) != 0),
        odd((word & DSP_SPECTRUM_ODD) != 0),
        raw((word & DSP_SPECTRUM_RAW) != 0),
        swaps(window != DSP_WINDOW_UNIFORM || centred || sum) {}
};

}  // namespace dsp::spectrum
