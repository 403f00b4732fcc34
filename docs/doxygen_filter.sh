#!/bin/sh
# Doxygen input filter for the public headers: plain block comments become
# documentation comments (each describes the declaration after it), and each
# "/* ===... Family */" banner opens a member group named after the family,
# closed at the next banner. The section markers the sources use to find
# their place ("/* @section x */") are left as plain comments.
awk '
NR == 1 && /^\/\* / { sub(/^\/\* /, "/** @file\n   "); print; next }
/^\/\* =+ .*\*\/$/ {
  title = $0
  sub(/^\/\* =+ /, "", title); sub(/ *\*\/$/, "", title)
  if (open) print "/** @} */"
  print "/** @name " title " */"
  print "/** @{ */"
  open = 1
  next
}
/^\/\* @section / { print; next }
/^\/\* -+ / { print; next }
/^[ \t]*\/\*[^*!]/ { sub(/\/\*/, "/**") }
/^#endif \/\* KELCC_H \*\/|^#ifdef __cplusplus$/ { if (open) { print "/** @} */"; open = 0 } }
{ print }
' "$1"
