# cmake -DHEADER=... -DOUTPUT=... -P ExtractExample.cmake: writes the example of use in a header's first comment, the
# lines that begin with "//" and three blanks, to a file that a test includes.
file(STRINGS ${HEADER} lines ENCODING UTF-8)
set(text "")
foreach(line IN LISTS lines)
  if(line STREQUAL "#pragma once")
    break()
  endif()
  if(line MATCHES "^//   ")
    string(REGEX REPLACE "^//   " "" line "${line}")
    string(APPEND text "${line}\n")
  endif()
endforeach()
file(WRITE ${OUTPUT} "${text}")
