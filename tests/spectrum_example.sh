#!/bin/bash
# Runs examples/spectrum: known tones must come back, everything wrong must end with status 2, one line and no file.
# usage: spectrum_example.sh PROGRAM DIRECTORY
program=$1
. "${BASH_SOURCE[0]%/*}/support/example_checks.sh"
work_in "$2"

# tone FREQUENCY AMPLITUDE SAMPLES: a sine at 48000 Hz, a number a line.
tone() {
  awk -v f="$1" -v a="$2" -v n="$3" 'BEGIN {
    w = 2 * atan2(0, -1) * f / 48000
    for (i = 0; i < n; ++i) printf "%.15g\n", a * sin(w * i + 0.3)
  }'
}

# wav: the numbers of stdin as the left channel of a 16 bit stereo file at 48000 Hz; the right one is silent.
wav() {
  local samples
  mapfile -t samples < <(awk '{ printf "%d\n0\n", $1 * 32767 + ($1 < 0 ? -0.5 : 0.5) }')
  local bytes=$((2 * ${#samples[@]}))
  printf "RIFF$(le 4 $((bytes + 36)))WAVEfmt $(le 4 16)$(le 2 1 2)$(le 4 48000 192000)$(le 2 4 16)data$(le 4 $bytes)"
  printf "$(le 2 "${samples[@]}")"
}

# finds FREQUENCY WITHIN LEVEL WITHIN ARGUMENT...: the strongest peak of the table.
finds() {
  local table
  table=$("$program" -o found.csv "${@:5}") || fail "status of $*"
  awk -v f="$1" -v df="$2" -v l="$3" -v dl="$4" '
    /frequency \/ Hz/ { getline; found = $1 >= f - df && $1 <= f + df && $2 >= l - dl && $2 <= l + dl; exit }
    END { exit !found }' <<<"$table" || fail "$* gives: $table"
}

tone 1234.5 0.5 20000 >tone.txt
tone 3000 0.999969 12000 | wav >tone.wav
{ echo "# a comment"; echo "time;volt"; tone 777.7 2 9000 | awk '{ print NR / 48000 ";" $1 }'; } >scope.csv

# A sine reads its level, wherever it lies between the bins and whatever the window.
finds 1234.5 0.02 -6.02 0.01 --rate 48000 tone.txt
finds 1234.5 0.02 -6.02 0.01 --rate 48000 --fraction 0.5 --block 8192 tone.txt
finds 1234.5 0.02 -6.02 0.01 --rate 48000 --block 3000 -w GAUSS80 tone.txt
finds 1234.5 0.02 -6.02 0.01 --rate 48000 --window hann --block 2048 --overlap 0.5 tone.txt
finds 1234.5 0.02 -6.02 0.01 --rate 48000 --window DSP_WINDOW_FLATTOP tone.txt
finds 1234.5 0.2 -6.02 0.01 --rate 48000 --window flat7 --fraction 0.1 --block 16384 tone.txt
finds 1234.5 0.2 -6.02 0.1 --rate 48000 -w uniform tone.txt
# Its side lobes are no peaks, and a window whose line is wider than the spectrum comes to an end.
"$program" --json --rate 48000 -w hann -b 256 -p 100 tone.txt >report || fail "status of --json"
grep -q '^{"frequency": 1234\.[45][^}]*"peaks": \[{[^}]*}\],.*}$' report || fail "peaks of a sine: $(cat report)"
for shape in "-b 16 -f 0.5" "-f 0.001"; do
  timeout 20 "$program" --csv $shape -w flat7 --rate 48000 tone.txt >numbers.csv || fail "status of $shape"
done
for mode in max min geometric harmonic last; do
  finds 1234.5 0.02 -6.02 0.01 --rate 48000 --average $mode --count 7 --exponential 3 tone.txt
done
finds 777.7 0.02 0 0.01 --rate 48000 --column volt --full-scale 2 scope.csv
finds 777.7 0.02 6.021 0.01 --rate 48000 -k2 scope.csv
finds 3000 0.02 0 0.01 --channel 1 tone.wav
finds 3000 0.02 -6.02 0.01 tone.wav

# What it writes.
"$program" --csv tone.wav >numbers.csv || fail "numbers to standard output"
[ "$(wc -l <numbers.csv)" -eq 2050 ] || fail "rows of numbers.csv"
[ "$(head -n 1 numbers.csv)" = frequency_hz,level_db ] || fail "head of numbers.csv"
[ "$(sed 1d numbers.csv | sort -t, -k2,2gr | head -n 1 | cut -d, -f1)" = 3000 ] || fail "greatest of numbers.csv"
"$program" --csv --from 1000 --to 2000 tone.wav | awk -F, 'NR > 1 && ($1 < 1000 || $1 > 2000) { exit 1 }' ||
  fail "range of the numbers"
"$program" --help | grep -q -e --window || fail "help"
tone 100 0 5000 >silence.txt
"$program" --rate 48000 -o silence.csv silence.txt | grep -q "no peaks" || fail "silence has peaks"
if command -v gnuplot >/dev/null; then
  for picture in "it's a \`picture\`.png" picture.svg; do
    "$program" --log -o "$picture" tone.wav >table || fail "drawing $picture"
    [ "$(stat -c %s "$picture")" -gt 5000 ] || fail "size of $picture"
  done
  [ "$(head -c 4 it*.png | tail -c 3)" = PNG ] || fail "kind of the PNG"
  grep -q "<svg" picture.svg || fail "kind of the SVG"
  "$program" --rate 48000 -o silence.png silence.txt >table
  [ $? -eq 1 ] && [ -s silence.png ] || fail "drawing silence"
fi

# What it refuses.
: >empty.wav
head -c 30000 tone.wav >truncated.wav
head -c 20 tone.wav >headless.wav
echo "no sound" >text.wav
printf '1\n2\nthree\n' >words.txt
printf '1\nnan\n' >nan.txt
yes 1e308 | head -n 99 >huge.txt
refuses "recording is needed"
refuses "cannot read" -o x.csv missing.wav
refuses "empty" -o x.csv empty.wav
refuses "truncated" -o x.csv truncated.wav
refuses "no sound file" -o x.csv headless.wav
refuses "no sound file" -o x.csv text.wav
refuses "directory" -o x.csv .
refuses "not a plain file" -o x.csv /dev/null
refuses "needs a name" -o x.csv --rate 1 -
refuses "hanning" -o x.csv --window hanning tone.wav
refuses "fewer than a block" -o x.csv --block 12001 tone.wav
refuses "fewer than a block" -o x.csv --rate 1 --block 20001 tone.txt
refuses "'1e' is not a number" -o x.csv --block 1e tone.wav
refuses "'' is not a number" -o x.csv --block= tone.wav
refuses "not a whole number" -o x.csv --block 100.5 tone.wav
refuses "not within" -o x.csv --block -5 tone.wav
refuses "not within" -o x.csv --overlap 1 tone.wav
refuses "'nan' is not a number" -o x.csv --fraction nan tone.wav
refuses "needs a value" tone.wav --block
refuses "unknown option" --blocks 7 tone.wav
refuses "takes no value" --csv=x tone.wav
refuses "mode" -o x.csv --average mode tone.wav
refuses "channel 3" -o x.csv --channel 3 tone.wav
refuses "'left' is not a number" -o x.csv --channel left tone.wav
refuses "no frequency" -o x.csv --from 2000 --to 1000 tone.wav
refuses "sample rate" -o x.csv tone.txt
refuses "line 3: 'three'" -o x.csv --rate 1 words.txt
refuses "line 2: 'nan'" -o x.csv --rate 1 nan.txt
refuses "beyond 1e90" -o x.csv --rate 1 --block 16 huge.txt
refuses "no column 'ampere'" -o x.csv --rate 1 --column ampere scope.csv
refuses "no column 3" -o x.csv --rate 1 --column 3 scope.csv
refuses "replace the recording" -o tone.wav --csv ./tone.wav
refuses "cannot write" -o nowhere/x.csv tone.wav
refuses "cannot write" -o . --csv tone.wav
refuses "not a plain file" -o /dev/full --csv tone.wav
command -v gnuplot >/dev/null && refuses ".png or .svg" -o x.gif tone.wav
printf '#!/bin/sh\nPATH=/nowhere exec "%s" "$@"\n' "$program" >without_gnuplot
chmod +x without_gnuplot
program=./without_gnuplot refuses "gnuplot" -o x.png tone.wav
"$program" --csv tone.wav 2>"$refused.err" >/dev/full && fail "a full standard output"
grep -q "standard output" "$refused.err" || fail "message of a full standard output"

[ $failures -eq 0 ] || exit 1
echo "all of spectrum's cases hold"
