#!/bin/bash
# usage: run.sh BUILD TREE FOLDER: installs BUILD into FOLDER and builds small projects outside the tree by every way that
# the README tells: find_package, pkg-config, add_subdirectory and a bare compiler line; each must run.
set -eu
build=$(cd "$1" && pwd)
tree=$(cd "$2" && pwd)
here=$tree/tests/outside
rm -rf "$3"
mkdir -p "$3"
cd "$3"

check() { # check WAY [PROGRAM...]: the programs, or those named, built in ./WAY
  local way=$1 program programs=(tone matrix)
  shift
  [ $# -eq 0 ] || programs=("$@")
  for program in "${programs[@]}"; do
    [ "$("$way/$program")" = "205 1.000000" ] || { echo "$1/$program does not work" >&2 && exit 1; }
  done
}
compile() { # compile WAY FLAGS...: both programs
  local way=$1
  shift
  mkdir -p "$way"
  "${CC:-cc}" "$here/tone.c" "$@" -o "$way/tone"
  "${CXX:-c++}" -std=c++17 "$here/matrix.cpp" "$@" -o "$way/matrix"
  check "$way"
}

# What a command prints is of interest only where it fails.
quietly() { "$@" >log 2>&1 || { cat log >&2 && exit 1; }; }

# with_package WAY PREFIX OPTIONS... : by find_package.
with_package() {
  quietly cmake -S "$here" -B "$1" -DCMAKE_PREFIX_PATH="$2" "${@:3}"
  quietly cmake --build "$1"
}
# with_pkg_config WAY PREFIX
with_pkg_config() {
  PKG_CONFIG_PATH=$(dirname "$(find "$2" -name dsp.pc)")
  export PKG_CONFIG_PATH
  # shellcheck disable=SC2046
  compile "$1" $(pkg-config --cflags --libs dsp) -Wl,-rpath,"$(pkg-config --variable=libdir dsp)"
}

# Moved after it was installed: nothing in it may name its place.
quietly cmake --install "$build" --prefix "$PWD/first"
mv first prefix
library=$(dirname "$(find "$PWD/prefix" -name libdsp.so)")

with_package find_package "$PWD/prefix"
check find_package
with_package archive "$PWD/prefix" -DDSP_ARCHIVE=ON
check archive tone
with_pkg_config pkg_config "$PWD/prefix"
compile bare -I"$PWD/prefix/include" -L"$library" -Wl,-rpath,"$library" -ldsp
mkdir -p private
# shellcheck disable=SC2046
"${CC:-cc}" "$here/tone.c" $(pkg-config --cflags dsp) "$library/libdsp.a" $(pkg-config --static --libs-only-l dsp | sed s/-ldsp//) \
  -o private/tone
check private tone

# As part of a project that names no build type: the kernels must be optimised all the same.
quietly cmake -S "$here" -B add_subdirectory -DDSP_TREE="$tree" -DDSP_ISA_DISPATCH=OFF -DCMAKE_EXPORT_COMPILE_COMMANDS=ON
quietly cmake --build add_subdirectory -j "$(nproc)"
check add_subdirectory
grep dsp_kernels_ add_subdirectory/compile_commands.json | grep command | grep -qv -- -O3 && echo "kernels without -O3" >&2 && exit 1

# An archive only, in folders of unusual names, one of them absolute; moved, used and taken away.
quietly cmake -S "$tree" -B odd -DBUILD_SHARED_LIBS=OFF -DDSP_TESTS=OFF -DDSP_EXAMPLES=OFF -DDSP_ISA_DISPATCH=OFF \
  -DCMAKE_BUILD_TYPE=Debug -DCMAKE_UNITY_BUILD=ON -DCMAKE_INSTALL_PREFIX="$PWD/odd-prefix" \
  -DCMAKE_INSTALL_LIBDIR="$PWD/odd-prefix/lib" -DCMAKE_INSTALL_INCLUDEDIR=include/dsp-2
quietly cmake --build odd -j "$(nproc)"
quietly cmake --install odd
mv odd-prefix moved
with_package odd_package "$PWD/moved"
check odd_package
with_pkg_config odd_pkg_config "$PWD/moved"
mv moved odd-prefix
quietly cmake --build odd --target uninstall
[ -z "$(find odd-prefix -type f -o -name '*dsp*')" ] || { echo "uninstall leaves files" >&2 && exit 1; }
