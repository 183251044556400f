# What the Windows targets have in common; `wine` runs their programs, with a prefix in the build directory. `wine_server`
# is the server itself, which waits some seconds after the last program has ended. Debian's script for it does not wait,
# and a program that starts at that moment fails.
set(CMAKE_SYSTEM_NAME Windows)
set(triplet ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32)
set(CMAKE_C_COMPILER ${triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${triplet}-windres)
set(CMAKE_CROSSCOMPILING_EMULATOR env WINEPREFIX=${CMAKE_BINARY_DIR}/wine WINEDEBUG=-all
    WINESERVER=${wine_server}
    WINEDLLOVERRIDES=mscoree,mshtml,winemenubuilder.exe= ${wine})
# Programs lie beside the DLL. All are linked statically, so that they need nothing but Windows.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
foreach(kind EXE SHARED)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT -static)
endforeach()
include(${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake)
