#!/bin/bash
# Runs examples/tone and examples/live on a tone of known level, distortion and noise.
# usage: tone_example.sh TONE LIVE DIRECTORY
tone=$1
live=$2
. "${BASH_SOURCE[0]%/*}/support/example_checks.sh"
work_in "$3"

# signal SAMPLES NOISE: at 48000 Hz, level -6.02 dB, harmonics 60 and 66.02 dB below it, an offset, uniform noise.
signal() {
  awk -v n="$1" -v noise="$2" 'BEGIN {
    srand(1)
    w = 2 * atan2(0, -1) * 997.3 / 48000
    for (i = 0; i < n; ++i) {
      x = 0.5 * sin(w * i) + 5e-4 * sin(2 * w * i + 1) + 2.5e-4 * sin(3 * w * i) + noise * (2 * rand() - 1) + 0.01
      printf "%.15g\n", x
    }
  }'
}

# reads NAME VALUE WITHIN: a line of the report.
reads() {
  awk -v name="$1" -v v="$2" -v d="$3" 'index($0, name) == 1 { x = substr($0, 24) + 0; found = x >= v - d && x <= v + d }
    END { exit !found }' report || fail "$1 is not $2: $(cat report)"
}

signal 60000 3e-5 >tone.txt
"$tone" --rate 48000 tone.txt >report || fail "status of tone"
reads frequency 997.3 0.0001
reads level -6.0206 0.001
reads "harmonic 2" -60 0.02
reads "harmonic 3" -66.02 0.03
reads "total distortion" -59.03 0.03
# Uniform noise has a third of the square of its bound as power, a sine half of its amplitude squared.
reads "noise  " -92.22 0.15
reads "noise density" -136.02 0.15
reads "signal to noise" 86.2 0.15
reads SINAD 59.02 0.03
reads "effective bits" 10.51 0.02
"$tone" --rate 48000 --harmonics 2 --full-scale 0.5 tone.txt >report || fail "status of tone"
reads level 0 0.001
reads "total distortion" -60 0.02

# A second harmonic above half the rate shows where it folds to.
awk 'BEGIN { w = 2 * atan2(0, -1); for (i = 0; i < 9000; ++i) printf "%.15g\n", cos(0.4 * w * i) + 0.001 * cos(0.8 * w * i) }' \
  >folded.txt
"$tone" --rate 1 folded.txt >report || fail "status of tone"
reads "harmonic 2" -60 0.02

# Near 0 Hz and half the rate, 4800 samples of a tone with an offset, a harmonic of -30 dB and hum of -40 dB 24 bins
# away; what has fewer than 3 periods is refused, and so is what noise or a neighbour pulls.
low() {
  awk -v f="$1" -v hum="$2" -v noise="$3" 'BEGIN {
    srand(1)
    w = 2 * atan2(0, -1) / 48000
    for (i = 0; i < 4800; ++i)
      printf "%.15g\n", 3 + 0.5 * (sin(w * f * i + 1) + 0.0316 * sin(2 * w * f * i) + 0.01 * cos(w * hum * i) + noise * rand())
  }'
}
for f in 30 50.4 83 97.7; do low $f $((${f%.*} + 241)) 0 >low_$f; done
for f in 23970 23941.3; do low $f $((${f%.*} - 240)) 0 >low_$f; done
for f in 30 50.4 83 97.7 23970 23941.3; do
  "$tone" --rate 48000 --json low_$f >report || fail "status of tone at $f Hz"
  sed 's/[":,{}]/ /g' report | awk -v f=$f '{ exit !(($2 - f) ^ 2 < 1e-10 && ($6 + 6.0206) ^ 2 < 1e-8) }' ||
    fail "tone at $f Hz: $(cat report)"
done
low 20 5000 0 >two_periods
low 23980 5000 0 >two_below
low 3000 3012 0 >neighbour
low 3000 5000 0.5 >noisy
awk 'BEGIN { for (i = 0; i < 4800; ++i) printf "%.15g\n", (1 - 1e-7 * i) * sin(atan2(0, -1) / 8 * i) }' >fading
program=$tone
status=1
refuses "fewer than 3 periods.* 7200 samples" --rate 48000 two_periods
refuses "7200 samples, or a higher" --rate 48000 two_below
refuses "change its level by" --rate 48000 neighbour
refuses "unsteadiness .* change its level by" --rate 48000 fading
refuses "change its level by" --rate 48000 noisy
refuses "no tone stands out" --rate 48000 --from 9000 --to 10000 two_periods
head -n 255 tone.txt >short.txt
yes 0 | head -n 1000 >silence.txt
refuses "255 samples; it takes 256" --rate 1 short.txt
refuses "no tone" --rate 1 silence.txt
# Both channels of a sound, in opposite phase, cancel in their mean.
awk '{ printf "%d\n%d\n", 30000 * $1, -30000 * $1 }' tone.txt | head -n 8000 >both.txt
{ printf "RIFF$(le 4 16036)WAVEfmt $(le 4 16)$(le 2 1 2)$(le 4 48000 192000)$(le 2 4 16)data$(le 4 16000)"
  printf "$(le 2 $(cat both.txt))"; } >opposite.wav
refuses "no tone.*mean of channels 1 to 2; --channel" opposite.wav
"$tone" -c 2 opposite.wav | grep -q "channel 2 of 2" || fail "channel 2 of opposite.wav"
status=2
refuses "recording is needed"
refuses "channel 2" --rate 1 -c 2 tone.txt
refuses "no frequency between" --rate 48000 --from 100 --to 50 tone.txt

# The same tone as raw 16 bit samples: a line each, its bar over the right column, and the same frequency and level.
awk '{ printf "%d\n", $1 * 32768 }' tone.txt | { mapfile -t samples && printf "$(le 2 "${samples[@]}")"; } >tone.raw
"$live" --lines 10 --width 48 --depth 100 <tone.raw >report || fail "status of live"
[ "$(wc -l <report)" -eq 13 ] || fail "lines of live: $(cat report)"
grep -q "strongest: 997\.3[0-2] Hz, -6\.0[0-4] dB" report || fail "live reads $(tail -n 1 report)"
[ "$(sed -n 2p report)" = "       │ ██$(printf '%45s' '')" ] || fail "live draws $(sed -n 2p report)"
[ "$(sed -n 12p report)" = "       0         5        10        15        20 kHz" ] || fail "axis: $(sed -n 12p report)"
"$live" --json <tone.raw | grep -q '{"frequency": 997\.3.*, "level": -6\.0[0-4].*, "rate": 48000, ' || fail "JSON of live"
program=$live
refuses "fewer samples" <tone.txt --block 1048576
refuses "power of two" --block 1000 <tone.raw
refuses "sample 1 is not finite" --format f32 <<<"$(yes $'\xff' | tr -d '\n' | head -c 20000)"
refuses "not one of s16" --format u8 <tone.raw

[ $failures -eq 0 ] || exit 1
echo "all of tone's and live's cases hold"
