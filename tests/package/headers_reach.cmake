# Public headers bring no header of port/ along and name none of the platform (what the standard
# library includes is its own affair). Those of port/ itself are there for hosts that ask for them.
cmake_minimum_required(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/headers.cmake")

set(findings 0)
foreach(header IN LISTS public_headers)
  if(header MATCHES "${asked_for}")
    continue()
  endif()
  file(WRITE "${source}" "#include \"${header}\"\n")
  execute_process(COMMAND ${compile} -M "${source}"
    OUTPUT_VARIABLE reached COMMAND_ERROR_IS_FATAL ANY)
  if(reached MATCHES "${INCLUDE_FOLDER}/port/[a-z_]+\\.h")
    message("${header} brings ${CMAKE_MATCH_0} along")
    math(EXPR findings "${findings} + 1")
  endif()
  file(STRINGS "${INCLUDE_FOLDER}/${header}" named REGEX "^[ \t]*#[ \t]*include[ \t]*<.*\\.h>")
  # Of the C language, not of the platform: the C interface has no other names for its widths.
  list(FILTER named EXCLUDE REGEX "<stdint\\.h>")
  foreach(line IN LISTS named)
    message("${header} names a header of the platform: ${line}")
    math(EXPR findings "${findings} + 1")
  endforeach()
endforeach()
if(findings GREATER 0)
  message(FATAL_ERROR "public headers reach too far")
endif()
