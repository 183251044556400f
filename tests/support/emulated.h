// Whether the processor is emulated, which is some fifty times slower: tests then leave out what takes longest, as long
// as native runs cover it.
#pragma once

namespace support {

#ifdef DSP_EMULATED
constexpr bool emulated = true;
#else
constexpr bool emulated = false;
#endif

}  // namespace support
