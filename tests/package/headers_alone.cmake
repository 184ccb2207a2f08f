# Each public header compiles as the only one of its source.
cmake_minimum_required(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/headers.cmake")

set(failures 0)
foreach(header IN LISTS public_headers)
  # Twice: a header without its guard would show.
  file(WRITE "${source}" "#include \"${header}\"\n#include \"${header}\"\n")
  execute_process(COMMAND ${compile} -fsyntax-only "${source}" RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message("${header} does not compile alone")
    math(EXPR failures "${failures} + 1")
  endif()
endforeach()
if(failures GREATER 0)
  message(FATAL_ERROR "${failures} headers do not stand alone")
endif()
