// Whether another processor is emulated, some fifty times slower: tests then leave out what takes longest and what
// their native runs show as well.
#pragma once

namespace support {

#ifdef DSP_EMULATED
constexpr bool emulated = true;
#else
constexpr bool emulated = false;
#endif

}  // namespace support
