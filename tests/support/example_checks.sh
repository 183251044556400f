# Sourced by the tests of the example programs.

failures=0

fail() {
  echo "FAILED: $*"
  failures=$((failures + 1))
}

# An empty directory to work in; what a refusal prints lies beside it.
work_in() {
  rm -rf "$1" && mkdir -p "$1" && cd "$1" || exit 1
  refused=$PWD.refused
}

# refuses WORD ARGUMENT...: $program ends with $status (2 if nothing is said) and one line on stderr that holds the word,
# and writes nothing.
status=2
refuses() {
  local before after ended
  before=$(ls)
  "$program" "${@:2}" >"$refused.out" 2>"$refused.err"
  ended=$?
  after=$(ls)
  [ $ended -eq $status ] || fail "status $ended of $*"
  [ "$(wc -l <"$refused.err")" -eq 1 ] || fail "lines on stderr of $*: $(cat "$refused.err")"
  grep -q -i -e "$1" "$refused.err" || fail "message of $*: $(cat "$refused.err")"
  [ -s "$refused.out" ] && fail "output of $*: $(cat "$refused.out")"
  [ "$before" = "$after" ] || fail "files after $*: $after"
}

# le BYTES VALUE...: little-endian integers as printf writes them.
le() {
  awk -v bytes="$1" 'BEGIN {
    for (k = 1; k < ARGC; ++k) {
      v = ARGV[k] < 0 ? ARGV[k] + 256 ^ bytes : ARGV[k]
      for (b = 0; b < bytes; ++b) { printf "\\%03o", v % 256; v = int(v / 256) }
    }
  }' "${@:2}"
}
