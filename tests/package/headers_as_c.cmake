# The headers of the C interface compile as C11, each as the only one of its source, without a word
# from a compiler that is told to be strict.
cmake_minimum_required(VERSION 3.25)

set(failures 0)
set(source "${INCLUDE_FOLDER}/../one_header.c")
foreach(header IN ITEMS signutils/signutils_c.h signutils/version.h support/export.h)
  file(WRITE "${source}" "#include \"${header}\"\n#include \"${header}\"\ntypedef int not_empty;\n")
  execute_process(
    COMMAND "${COMPILER}" -std=c11 -Wall -Wextra -Wpedantic -Wconversion -Wshadow
            -Wstrict-prototypes -Wold-style-definition -Wc++-compat -Werror
            "-I${INCLUDE_FOLDER}" -fsyntax-only "${source}"
    RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message("${header} is not plain C")
    math(EXPR failures "${failures} + 1")
  endif()
endforeach()
if(failures GREATER 0)
  message(FATAL_ERROR "${failures} headers are not plain C")
endif()
