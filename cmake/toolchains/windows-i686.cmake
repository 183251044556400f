# 32-bit Windows: Debian's MinGW-w64, run by the Wine of Debian's i386. Arithmetic uses SSE2, since the x87 rounds
# differently. Callers may align the stack to 4 bytes only.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(wine /usr/lib/wine/wine)
set(wine_server /usr/lib/wine/wineserver32)
foreach(language C CXX)
  set(CMAKE_${language}_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
endforeach()
include(${CMAKE_CURRENT_LIST_DIR}/debian-mingw.cmake)
