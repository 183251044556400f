# Sourced by the other scripts: makes sure that what they need is there.

cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
export CMAKE_GENERATOR=Ninja # also where no preset names it

# Is it there? A name with a slash is a file, one that ends in .pc a library that pkg-config knows, all else a program.
have() {
  case $1 in
    */*) [ -e "$1" ] ;;
    *.pc) pkg-config --exists "${1%.pc}" 2>/dev/null ;;
    *) command -v "$1" >/dev/null 2>&1 ;;
  esac
}

# install_packages PACKAGE... : true when they could be installed, without a question to anyone.
install_packages() {
  command -v apt-get >/dev/null 2>&1 || return 1
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    sudo -n true 2>/dev/null || return 1
    as_root=(sudo -n)
  fi
  local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300)
  echo "installing: $*"
  "${apt[@]}" update </dev/null >/dev/null || true
  "${apt[@]}" install --no-install-recommends "$@" </dev/null >/dev/null
}

# need WHAT=PACKAGE... : installs the Debian packages of all that `have` does not find; where that cannot be done, names
# what is missing and ends the script.
need() {
  local item packages=() missing=()
  for item in "$@"; do
    have "${item%%=*}" || packages+=("${item#*=}")
  done
  [ ${#packages[@]} -eq 0 ] && return
  install_packages "${packages[@]}" && hash -r
  for item in "$@"; do
    have "${item%%=*}" || missing+=("${item%%=*} (Debian: ${item#*=})")
  done
  [ ${#missing[@]} -eq 0 ] && return
  {
    echo "$0: this is missing and cannot be installed from here:"
    printf '  %s\n' "${missing[@]}"
    echo "On Debian: apt-get install ${packages[*]}"
  } >&2
  exit 1
}

# build PRESET [TARGET...] : configures and builds in build/PRESET.
build() {
  local preset=$1
  shift
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" ${1:+--target "$@"}
}

compiler=(pkg-config=pkg-config cmake=cmake ninja=ninja-build c++=g++)
examples=(sndfile.pc=libsndfile1-dev gnuplot=gnuplot-nox)
tests=(gtest.pc=libgtest-dev)
test_sources=(/usr/src/googletest/CMakeLists.txt=googletest)
modules=/usr/lib/python3/dist-packages
python=($modules/numpy/=python3-numpy $modules/scipy/=python3-scipy $modules/matplotlib/=python3-matplotlib
  $modules/pytest/=python3-pytest mypy=mypy)
