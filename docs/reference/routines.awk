# Makes the page of all routines, one line each, from dsp.h: name, first sentence of its comment, family.

BEGIN {
  print "# All routines {#routines}\n"
  print "| routine | what it does | family |\n|---|---|---|"
}
/^\/\* =====/ {
  getline
  family = substr($0, 4)
  gsub(/ *\(.*/, "", family)
}
/^\/\*\*/ { comment = ""; reading = 1 }
reading {
  line = $0
  sub(/^\/\*\* */, "", line)
  sub(/^ \* ?/, "", line)
  if (line == "" || line ~ /^  /) over = 1
  if (!over) comment = comment " " line
  if (/\*\//) { reading = over = 0 }
  next
}
/^DSP_API/ {
  name = $0
  sub(/\(.*/, "", name)
  sub(/.*[ *]/, "", name)
  text = comment
  sub(/ *\*\/.*/, "", text)
  sub(/^ +/, "", text)
  if (match(text, /[.:;] /)) text = substr(text, 1, RSTART - 1)
  sub(/[.:;]$/, "", text)
  gsub(/\|/, "\\|", text)
  gsub(/\*/, "\\*", text)
  print "| " name "() | " text " | " family " |" | "LC_ALL=C sort -f"
}
