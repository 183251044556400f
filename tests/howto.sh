#!/bin/bash
# usage: howto.sh SOURCES PROGRAMS [PYTHON]: runs the manual's programs, in C from the folder PROGRAMS and in Python: each
# must print what lies beside it as .txt, and have at most 40 lines.
set -u
broken=0
complain() { echo "$*" >&2 && broken=1; }
cd "$(mktemp -d)" || exit
for source in "$1"/*.c "$1"/*.py; do
  [ "$(wc -l <"$source")" -le 40 ] || complain "$source is longer than 40 lines"
  case $source in
    *.c) said=$("$2/howto_$(basename "$source" .c)") ;;
    *.py) [ -n "${3-}" ] || continue; said=$("$3" "$source") ;;
  esac
  [ "$said" = "$(<"${source%.*}.txt")" ] || complain "$source prints: $said"
done
exit $broken
