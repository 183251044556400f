# WebAssembly with its vector instructions: Debian's emscripten, run by Node. The preset names the folder where Debian
# keeps the modules of Node that emscripten uses, since another Node does not look there.
include(/usr/share/emscripten/cmake/Modules/Platform/Emscripten.cmake)
# Memory is copied by its bulk instructions. No warning of templates in kernels that are unused where vectors are short.
foreach(language C CXX)
  set(CMAKE_${language}_FLAGS_INIT "-fwasm-exceptions -mbulk-memory -Wno-unneeded-internal-declaration")
endforeach()
# No optimisation at link time, which would take minutes for each program.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-O1 -sALLOW_MEMORY_GROWTH -sNODERAWFS -sEXIT_RUNTIME")
# emscripten's start-up code takes Node's fetch for a browser's.
set(CMAKE_CROSSCOMPILING_EMULATOR node --no-experimental-fetch)
