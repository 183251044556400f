# Sourced by the tests of the example programs.

failures=0

fail() {
  echo "FAILED: $*"
  failures=$((failures + 1))
}

# An empty directory to work in.
work_in() { rm -rf "$1" && mkdir -p "$1" && cd "$1" || exit 1; }

# le BYTES VALUE...: little-endian integers as printf writes them.
le() {
  awk -v bytes="$1" 'BEGIN {
    for (k = 1; k < ARGC; ++k) {
      v = ARGV[k] < 0 ? ARGV[k] + 256 ^ bytes : ARGV[k]
      for (b = 0; b < bytes; ++b) { printf "\\%03o", v % 256; v = int(v / 256) }
    }
  }' "${@:2}"
}
