# 32-bit ARM with VFP: Debian's g++-arm-linux-gnueabihf.
set(CMAKE_SYSTEM_PROCESSOR arm)
set(triplet arm-linux-gnueabihf)
# No notes on class types that GCC has passed otherwise since version 7: nothing older is linked.
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)
include(${CMAKE_CURRENT_LIST_DIR}/debian-linux.cmake)
