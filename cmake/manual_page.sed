# Gives the line of usage, which help2man takes for a description, a section of its own.
/^\.SH DESCRIPTION$/ {
  N
  s/.*\nusage: *\(.*\)/.SH SYNOPSIS\n\1\n.SH DESCRIPTION/
}
