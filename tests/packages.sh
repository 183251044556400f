#!/bin/bash
# usage: packages.sh FOLDER: installs the Debian packages in FOLDER, uses them as the README tells, and removes them again.
# Leaves the machine as it was.
set -eu
if [ "$(id -u)" -ne 0 ]; then
  echo "the packages are not installed and tried: this takes root"
  exit
fi
folder=$(cd "$1" && pwd)
readme=$(cd "$(dirname "$0")/.." && pwd)/README.md
work=$(mktemp -d)
names=()
for package in "$folder"/*.deb; do names+=("$(dpkg-deb -f "$package" Package)"); done
take_away() {
  cd /
  rm -rf "$work"
  DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300 purge "${names[@]}" >/dev/null
}
trap take_away EXIT

apt-get -q -o DPkg::Lock::Timeout=300 update >/dev/null || true
DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300 install --no-install-recommends "$folder"/*.deb >/dev/null
cd "$work"

# program FENCE FILE: the README's first program in that language
program() { awk -v fence="\`\`\`$1" '/^```/ && on { exit } on; $0 == fence { on = 1 }' "$readme" >"$2"; }
expect() { # expect TEXT COMMAND...
  local text=$1 said
  shift
  said=$("$@")
  [ "$said" = "$text" ] || { echo "$*: '$said', not '$text'" >&2 && exit 1; }
}
program c first.c
# shellcheck disable=SC2046
cc first.c $(pkg-config --cflags --libs dsp) -o first
expect "123.40 Hz" ./first
program cpp median.cpp
# shellcheck disable=SC2046
c++ median.cpp $(pkg-config --cflags --libs dsp) -o median
expect "median 5.01" ./median
program python first.py
expect "123.40 Hz" /usr/bin/python3 first.py
for program in spectrum tone stream live oneport; do
  "dsp-$program" --help >/dev/null
  [ -e "/usr/share/man/man1/dsp-$program.1.gz" ] || [ -e /etc/dpkg/dpkg.cfg.d/docker ] || { echo "dsp-$program has no man page" >&2 && exit 1; }
done

left=$(cat /var/lib/dpkg/info/{libdsp2:*,libdsp-dev:*,libdsp-dev,dsp-tools,python3-dsp,libdsp-doc}.list 2>/dev/null | grep -E '/[^/]*dsp[^/]*(/|$)')
take_away
trap - EXIT
for path in $left; do
  [ ! -e "$path" ] || { echo "$path is left behind" >&2 && exit 1; }
done
echo "installed, used and removed: ${names[*]}"
