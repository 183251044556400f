# What the Linux targets have in common: Debian's cross compilers, and programs run by qemu-user.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${triplet}-gcc)
set(CMAKE_CXX_COMPILER ${triplet}-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-${CMAKE_SYSTEM_PROCESSOR};-L;/usr/${triplet})
include(${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake)
