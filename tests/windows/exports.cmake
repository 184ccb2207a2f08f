# Compares what a module exports with its committed list of exports.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND "${OBJDUMP}" -p "${MODULE}"
  OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCH "\\[Ordinal/Name Pointer\\] Table.*" table "${headers}")
string(REGEX REPLACE "\n\n.*" "" table "${table}") # relocations follow
string(REGEX MATCHALL "\\[ *[0-9]+\\] [^\n]+" lines "${table}")
list(TRANSFORM lines REPLACE "^\\[ *[0-9]+\\] " "" OUTPUT_VARIABLE exported)

file(STRINGS "${LIST}" listed REGEX "^ ")
list(TRANSFORM listed STRIP)
list(TRANSFORM listed REPLACE " .*$" "")

foreach(name IN LISTS listed)
  if(NOT name IN_LIST exported)
    message("- ${name}")
    set(differs ON)
  endif()
endforeach()
foreach(name IN LISTS exported)
  if(NOT name IN_LIST listed)
    message("+ ${name}")
    set(differs ON)
  endif()
endforeach()
list(LENGTH exported count)
if(differs OR count EQUAL 0)
  message(FATAL_ERROR "${MODULE} exports ${count} symbols, not what ${LIST} lists (- gone, + new).")
endif()
message("${count} symbols, as listed")
