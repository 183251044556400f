# Doxygen's input filter for dsp.h: turns the banner of each section into a group of its own, and repeats a comment that
# stands above several declarations for each of them. The pictures of the windows, filters and the converter, which lie in
# the folder `pictures`, go to the sections that they belong to.

BEGIN {
  prefix["window"] = "window_"
  prefix["filter"] = "fir_"
  prefix["resample"] = "converter"
}

function show_pictures(family,   list, file) {
  if (!(family in prefix)) return
  list = "ls " pictures "/" prefix[family] "*.png"
  while ((list | getline file) > 0) {
    sub(/.*\//, "", file)
    print " * @image html " file " width=90%"
  }
  close(list)
}

function close_group() {
  if (open) print "/** @} */"
  open = 0
}

# The introduction to the whole becomes a page, its conventions a list.
FNR == 1 && /^\/\* dsp - / { print "/** @page conventions Conventions"; front = 1; next }
front && /^ \*\// { front = 0 }
front && /^ \* [A-Z][a-z]+  +[^ ]/ { sub(/^ \* [A-Z][a-z]+/, " * - **" $2 "**"); print; next }
front { sub(/^ \*    +/, " *   "); print; next }

/^\/\* =====/ {
  close_group()
  getline
  title = substr($0, 4)
  family = title
  sub(/.*\(/, "", family)
  sub(/\).*/, "", family)
  sub(/ *\(.*/, "", title)  # the sidebar is narrow
  name = title
  gsub(/[^A-Za-z]+/, "_", name)
  print "/** @defgroup " name " " title
  print " * @{"
  banner = 1
  open = 1
  next
}
banner && /^ \* =====/ {
  show_pictures(family)
  print " */"
  banner = 0
  comment = ""
  next
}
banner { print; next }

/^#ifdef __cplusplus/ { close_group() }

# Remember a comment while it passes by ...
/^\/\*\*/ { comment = ""; reading = 1 }
reading {
  comment = comment $0 "\n"
  if (/\*\//) { reading = 0; fresh = 1 }
  print
  next
}
# ... and give it again to a declaration that follows another one directly.
/^(DSP_API|typedef .*\);)/ {
  if (!fresh && comment != "") printf "%s", comment
  fresh = 0
}
/^$/ { comment = ""; fresh = 0 }
{ print }
