# 64-bit Windows: Debian's MinGW-w64, run by Wine.
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(wine /usr/lib/wine/wine64)
set(wine_server /usr/lib/wine/wineserver64)
include(${CMAKE_CURRENT_LIST_DIR}/debian-mingw.cmake)
