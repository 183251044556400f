# Doxygen's input filter for the manual. A link to a section of howto.md becomes one that Doxygen knows, and the line
# "howto NAME" the program NAME in C and Python side by side, what they print, and its picture.

/^howto [a-z]+$/ {
  print "@htmlonly<div class=\"pair\"><div>@endhtmlonly"
  print "@include " $2 ".c"
  print "@htmlonly</div><div>@endhtmlonly"
  print "@include " $2 ".py"
  print "@htmlonly</div></div>@endhtmlonly"
  print "They print:"
  print "@verbinclude " $2 ".txt"
  print "@image html howto_" $2 ".png"
  next
}
{
  gsub(/\(howto\.md#/, "(@ref ")
  gsub(/\.md#[a-z0-9-]+\)/, ".md)")  # of sections without a name of their own it knows the page only
  print
}
