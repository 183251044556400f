#!/bin/bash
# Text files as instruments and spreadsheets write them: dsp-tone reads the column that is meant, or says what is
# ambiguous. usage: table_example.sh TONE DIRECTORY
program=$1
. "${BASH_SOURCE[0]%/*}/support/example_checks.sh"
work_in "$2"

# rows FORMAT [UNIT]: 600 rows of time in this unit of a second, 1234 Hz of amplitude 1 and 777 Hz of amplitude 0.5, at
# 10 kHz.
rows() {
  awk -v format="$1\n" -v unit="${2:-1}" 'BEGIN {
    for (i = 0; i < 600; ++i)
      printf format, i * 1e-4 / unit, cos(2 * atan2(0, -1) * 0.1234 * i), 0.5 * cos(2 * atan2(0, -1) * 0.0777 * i)
  }'
}
comma() { tr . ,; }

# reads FREQUENCY LEVEL ARGUMENT... <TABLE: what the table on standard input gives.
reads() {
  cat >table.csv
  "$program" --json "${@:3}" table.csv 2>&1 | sed 's/[":,{}]/ /g' >report
  awk -v f="$1" -v l="$2" '{ exit !(($2 - f) ^ 2 < 1e-6 && ($6 - l) ^ 2 < 1e-6) }' report ||
    fail "$*: $(cat report) of $(head -n 3 table.csv)"
}
# refused WORD ARGUMENT... <TABLE
refused() { cat >table.csv && refuses "$@" table.csv; }

# Three kinds of oscilloscopes: names with units; a preamble of pairs before the names; a line of units below them, with
# decimal commas and milliseconds.
scope() { echo 'Time (s),CH1 (V),CH2 (V)'; rows '%.6e,%.9e,%.9e'; }
pairs() { printf 'Model,77\r\nRecord Length,600\r\nVertical Units,V\r\n\r\nTIME,CH1\r\n'; rows '%.7g,%.9g\r'; }
units() { printf 'Time;Channel A;Channel B\n(ms);(mV);(V)\n\n'; rows '%.8f;%.9f;%.9f' 1e-3 | comma; }
scope | reads 1234 0 -k CH1
scope | reads 777 -6.0206 -k 'CH2 (V)'
scope | reads 777 -6.0206 -k ch2
scope | reads 2468 0 -k 2 --rate 20000
pairs | reads 1234 0
pairs | tr -d '\n' | reads 1234 0
units | reads 1234 -60 -k 'Channel A'
units | reads 777 -6.0206 -k 3
{ printf 'x-axis,1\nsecond,Volt\n'; rows '%.7g,%.9g'; } | reads 1234 0
# Spreadsheets: byte-order mark, quotes around all, doubled quotes in a name, blanks after commas, tabs.
{ printf '\xef\xbb\xbf"Time [\xc2\xb5s]","the ""left"", mV (mV)"\r\n'; rows '"%.6f", "%.9f"\r' 1e-6; } | reads 1234 -60
{ echo 't/ms,v / m/s,u / mV'; rows '%.8f,%.9f,%.9f' 1e-3; } | reads 777 -66.0206 -k u
{ printf 't\tU\n'; rows $'%.7f\t%.9f' | comma; } | reads 1234 0
rows '%.0s%.9f' | reads 1234 0 --rate 1e4
rows '  %.7f   %.9f   # comment' | reads 1234 0 --rate 1e4 -k 2
scope >table.csv
"$program" -k CH1 --rate 1e4 table.csv | grep -q "column CH1 (V); the sample rate is that of --rate" || fail "which rate"

scope | refused "several columns, Time.*--column"
rows '%.7f,%.9f' | refused "several columns: --column" --rate 1e4
rows '%.0s%.9f' | comma | refused "several columns" --rate 1e4
{ echo 'Time (s),CH1 (V),CH1 (A)'; rows '%g,%g,%g'; } | refused "several columns 'CH1'" -k CH1
{ echo 'Time (s),CH1'; rows '%g,%g' | comma; } | refused "2 names above 4 columns"
{ echo 'x;y'; rows '%g;%g'; echo '0,5;0,5'; } | refused "'0,5' is not a number" -k y --rate 1
{ echo 'x;y'; rows '%g;%g' | head -n 9; echo '0,5;0,5'; } | refused "another decimal sign" -k y --rate 1
{ scope; echo '0.06,1'; } | refused "line 602: 2 fields; the other lines have 3" -k CH1
{ scope; echo '0.0601,1,1'; } | refused "line 602: the times leap" -k CH1
# Every other sample 5 % late; times rounded to 4 digits of their own.
{ echo 'Time (s),CH1'; rows '%.9f,%.9f' | awk -F, -v OFS=, 'NR % 2 { $1 += 5e-6 } 1'; } | refused "line .*not evenly spaced"
{ echo 'Time (s),CH1'; rows '%.5g,%.9f' | awk -F, -v OFS=, '{ $1 = sprintf("%.4g", $1 + 2e-5) } 1'; } | reads 1234 0
# Times that are rounded in the digits of a double: the frequency is told to what they allow.
{ echo 'Time (s),CH1'; rows '%.9f,%g' | awk -F, '{ printf "%.9f,%s\n", $1 + 1.7e9, $2 }'; } >table.csv
"$program" table.csv | grep -q "^frequency  *123[34]\.[09][09][0-9] Hz" || fail "digits: $("$program" table.csv)"
{ echo 'Time (samples),CH1'; rows '%g,%g'; } | refused "unit 'samples' of the time" -k CH1
{ echo 'Time (Ms),CH1'; rows '%g,%g'; } | refused "unit 'Ms' of the time"
{ echo 'Time,CH1'; rows '1,%.0s%g'; } | refused "do not rise"
{ echo 'second,"Volt'; rows '%g,"%g'; } | refused "quote that is not closed"
{ echo 'x-axis,1'; rows '%g,%g'; } | refused "a place and also the name of column 2" --rate 1 -k 1
{ echo 'Time (s),CH1'; rows '%g,%g'; echo '0.06,0x1'; } | refused "'0x1' is not a number"
printf 'volt\n1\n2x\n3\n4\n5\n6\n' | refused "line 3: no numbers" --rate 1
{ echo 'Time (s),CH1 (mV'; rows '%g,%g'; } | refused "'CH1 (mV' is not clear"
scope | iconv -t UTF-16 | refused "ASCII or UTF-8" -k CH1
printf 'Time,CH1\n' | refused "no numbers"

[ $failures -eq 0 ] || exit 1
echo "all tables are read or refused as they should"
