# Compares what a library exports with the committed list, or writes the list (-DACCEPT=ON).
#
# The list holds the symbols as the linker knows them, so that it tells constructors of whole
# objects from those of bases; differences are shown in readable form too.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND "${NM}" -D --defined-only "${LIBRARY}"
  OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "\n$" "" symbols "${symbols}")
string(REPLACE "\n" ";" symbols "${symbols}")
list(TRANSFORM symbols REPLACE "^[0-9a-f]* . " "")
list(TRANSFORM symbols REPLACE "@.*$" "")
list(REMOVE_DUPLICATES symbols)
list(SORT symbols)

if(ACCEPT)
  list(JOIN symbols "\n" lines)
  file(WRITE "${EXPECTED}" "${lines}\n")
  return()
endif()

function(show sign names)
  foreach(name IN LISTS names)
    execute_process(COMMAND c++filt "${name}"
      OUTPUT_VARIABLE readable OUTPUT_STRIP_TRAILING_WHITESPACE)
    message("${sign} ${name}  ${readable}")
  endforeach()
endfunction()

file(STRINGS "${EXPECTED}" expected)
set(missing ${expected})
list(REMOVE_ITEM missing ${symbols})
set(additional ${symbols})
list(REMOVE_ITEM additional ${expected})
show("-" "${missing}")
show("+" "${additional}")
if(missing OR additional)
  message(FATAL_ERROR "${LIBRARY} does not export what ${EXPECTED} lists "
                      "(- gone, + new). When the change is wanted, build the target "
                      "accept_symbols and commit the list.")
endif()
