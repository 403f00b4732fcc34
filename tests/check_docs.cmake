# The README shows docs/example.c and docs/example.py verbatim (each in a
# fenced block), so the examples that the tests compile and run are the ones
# a reader copies.
file(READ ${SRC}/README.md readme)
foreach(f example.c example.py)
  file(READ ${SRC}/docs/${f} text)
  string(FIND "${readme}" "${text}" at)
  if(at LESS 0)
    message(FATAL_ERROR "README.md does not hold docs/${f} verbatim")
  endif()
endforeach()
