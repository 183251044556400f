#!/bin/bash
# Runs examples/stream: tones pass or vanish, stay where they were in time, and everything wrong ends with status 2, one
# line and no file.
# usage: stream_example.sh STREAM SPECTRUM DIRECTORY
stream=$1
program=$stream
spectrum=$2
. "${BASH_SOURCE[0]%/*}/support/example_checks.sh"
work_in "$3"

# wav SAMPLES EXPRESSION...: a 16 bit file at 48000 Hz, a channel for each awk expression of the time t in seconds.
wav() {
  local samples channels=$(($# - 1)) expression
  expression=$(printf 'print int(32767 * (%s)); ' "${@:2}")
  mapfile -t samples < <(awk -v n="$1" "BEGIN { w = 8 * atan2(1, 1); for (i = 0; i < n; ++i) { t = i / 48000; $expression } }")
  local bytes=$((2 * ${#samples[@]}))
  printf "RIFF$(le 4 $((bytes + 36)))WAVEfmt $(le 4 16)$(le 2 1 $channels)$(le 4 48000 $((96000 * channels)))"
  printf "$(le 2 $((2 * channels)) 16)data$(le 4 $bytes)$(le 2 "${samples[@]}")"
}

# level FILE CHANNEL FREQUENCY: of the spectrum there, a whole number of dB.
level() {
  "$spectrum" --csv -b 2048 -c "$2" "$1" |
    awk -F, -v f="$3" 'NR > 1 && (NR == 2 || ($1 - f) ^ 2 < d) { d = ($1 - f) ^ 2; l = $2 } END { printf "%.0f", l }'
}

# reads LEVEL FILE CHANNEL FREQUENCY: within a dB; below: at most.
reads() { [ $(($(level "${@:2}") - $1)) -ge -1 ] && [ $(($(level "${@:2}") - $1)) -le 1 ] || fail "$* is $(level "${@:2}")"; }
below() { [ "$(level "${@:2}")" -le "$1" ] || fail "below $* is $(level "${@:2}")"; }

# frames FILE: how many there are, from the data chunk of a plain WAV file of as many channels.
frames() { echo $((($(stat -c %s "$1") - 44) / 2 / $2)); }

wav 24000 '0.25 * sin(w * 1000 * t) + 0.25 * sin(w * 9000 * t)' '0.5 * sin(w * 3000 * t)' >in.wav

"$stream" -f lowpass -e 5000 in.wav low.wav >report || fail lowpass
grep -q "24000 frames at 48000 Hz" report || fail "report: $(cat report)"
reads -12 low.wav 1 1000; below -85 low.wav 1 9000; reads -6 low.wav 2 3000
"$stream" --filter=bandstop --edge=2000,4000 --taps 501 in.wav stop.wav >report || fail bandstop
reads -12 stop.wav 1 1000; reads -12 stop.wav 1 9000; below -85 stop.wav 2 3000
"$stream" -f gaussian -e 1000 -t 201 in.wav gauss.wav >report || fail gaussian
reads -15 gauss.wav 1 1000
"$stream" -r 11025 in.wav slow.wav >report || fail conversion
grep -q "5513 frames at 11025 Hz" report || fail "report: $(cat report)"
reads -12 slow.wav 1 1000; reads -6 slow.wav 2 3000

# A step stays where it was, whatever the block, and a file cut into other blocks gives the same bytes.
wav 9600 't < 0.1 ? -0.5 : 0.5' >step.wav
"$stream" -f lowpass -e 3000 -r 16000 step.wav a.wav >report || fail step
"$stream" -f lowpass -e 3000 -r 16000 -b 100 step.wav b.wav >report || fail step
cmp -s a.wav b.wav || fail "blocks differ"
[ "$(frames a.wav 1)" -eq 3200 ] || fail "frames of a.wav"
crossing=$(od -An -v -t d2 -w2 -j 44 a.wav | awk '$1 > 0 && !n { n = NR } END { print n }')
[ "$crossing" -ge 1600 ] && [ "$crossing" -le 1602 ] || fail "the step is at $crossing"

# The name tells the format; pipes give the bytes that files give; what is beyond full scale is counted.
"$stream" in.wav lossy.ogg >report && "$stream" lossy.ogg back.wav >report || fail "formats"
[ "$(head -c 4 lossy.ogg)$(head -c 4 back.wav)" = OggSRIFF ] || fail "kinds of lossy.ogg and back.wav"
reads -12 back.wav 1 1000
"$stream" -r 16000 in.wav piped.wav >report && "$stream" -r 16000 - - <in.wav | cmp -s - piped.wav || fail "pipes"
"$stream" --gain 12.0412 in.wav loud.wav >report 2>clipped || fail "a loud output"
grep -q "clipped, the largest [56]\.[0-9]* dB beyond.*--gain 6\.0" clipped || fail "clipped: $(cat clipped)"
"$stream" --gain 12.0412 --encoding f32 --json in.wav loud.wav >report 2>clipped || fail "a loud output in floats"
grep -q '"frames": 24000, .*"level": [56]\..*"clipped": 0, "start": 0}' report && [ ! -s clipped ] || fail "floats: $(cat report clipped)"
"$stream" -f lowpass -e 5000 -t 20 --json in.wav even.wav | grep -q '"start": -1\.04166.*e-05}' || fail "start of even.wav"
reads 0 loud.wav 1 1000; reads 6 loud.wav 2 3000
ln in.wav same.wav

if command -v gnuplot >/dev/null; then
  "$stream" -f highpass -e 5000 -p both.svg in.wav high.wav >report || fail drawing
  grep -q "<svg" both.svg || fail "picture"
  refuses "cannot write" -p nowhere/x.png in.wav x.wav
  refuses ".png or .svg" -p x.gif in.wav x.wav
fi
"$stream" --help | grep -q -e --edge || fail help

head -c 5000 in.wav >truncated.wav
: >empty.wav
refuses "input and an output" in.wav
refuses "cannot read" missing.wav x.wav
refuses "truncated" truncated.wav x.wav
refuses "empty" empty.wav x.wav
refuses "cannot write" in.wav nowhere/x.wav
refuses "plain file" in.wav /dev/null
refuses "not within" -r 48001 in.wav x.wav
refuses "unknown" -f notch -e 50 in.wav x.wav
refuses "needs --edge" -f lowpass in.wav x.wav
refuses "filter is missing" -t 31 in.wav x.wav
refuses "half the sample rate" -f lowpass -e 24000 in.wav x.wav
refuses "half the sample rate" -f bandpass -e 100, in.wav x.wav
refuses "a lower and a higher" -f bandpass -e 300,200 in.wav x.wav
refuses "takes one edge" -f lowpass -e 200,300 in.wav x.wav
refuses "odd number" -f highpass -e 200 -t 100 in.wav x.wav
refuses "hanning" -f lowpass -e 200 -w hanning in.wav x.wav
refuses "not within" -b 0 in.wav x.wav
refuses "is the input itself" in.wav same.wav
refuses "tells no format" in.wav x.mp4
refuses "cannot hold this encoding" --encoding f32 in.wav x.flac
refuses "not one of s16" --encoding u8 in.wav x.wav
refuses "no sound file" - x.wav <report
refuses "taken by the sound" --json in.wav -

[ $failures -eq 0 ] && echo "all as expected"
exit $((failures > 0))
