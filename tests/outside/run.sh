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

check() { # check WAY: the two programs, built in ./WAY
  for program in tone matrix; do
    [ "$("$1/$program")" = "205 1.000000" ] || { echo "$1/$program does not work" >&2 && exit 1; }
  done
}
compile() { # compile WAY FLAGS...: both programs
  local way=$1
  shift
  mkdir -p "$way"
  "${CC:-cc}" "$here/tone.c" "$@" -o "$way/tone"
  "${CXX:-c++}" "$here/matrix.cpp" "$@" -o "$way/matrix"
  check "$way"
}

# Moved after it was installed: nothing in it may name its place.
cmake --install "$build" --prefix "$PWD/first" >/dev/null
mv first prefix
library=$(dirname "$(find "$PWD/prefix" -name libdsp.so)")

cmake -S "$here" -B find_package -DCMAKE_PREFIX_PATH="$PWD/prefix" >/dev/null
cmake --build find_package >/dev/null
check find_package

export PKG_CONFIG_PATH=$library/pkgconfig
# shellcheck disable=SC2046
compile pkg_config $(pkg-config --cflags --libs dsp) -Wl,-rpath,"$library"

compile bare -I"$PWD/prefix/include" -L"$library" -Wl,-rpath,"$library" -ldsp

cmake -S "$here" -B add_subdirectory -DDSP_TREE="$tree" -DDSP_ISA_DISPATCH=OFF -DCMAKE_BUILD_TYPE=Debug >/dev/null
cmake --build add_subdirectory -j "$(nproc)" >/dev/null
check add_subdirectory
