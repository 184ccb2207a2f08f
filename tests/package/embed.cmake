# Builds the example against the staged package and has it judge one file, twice.
cmake_minimum_required(VERSION 3.25)

include("${CMAKE_CURRENT_LIST_DIR}/build_example.cmake")
build_example(judge)
file(WRITE "${WORK}/order.xml" "<Document/>\n")

set(ENV{SIGNUTILS_SPOOL} "${WORK}/spool")
set(ENV{SIGNUTILS_HANDOFF} "${WORK}/handoff")

# expect(<exit status> <text on standard output> <signer>)
function(expect status text signer)
  execute_process(
    COMMAND "${example}" "Driver=SQLite3;Database=${BANK}" "${WORK}/order.xml" "${signer}"
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  if(NOT result EQUAL status OR NOT output STREQUAL "${WORK}/order.xml: ${text}\n")
    message(FATAL_ERROR "judging '${signer}': expected ${status} and '${text}', "
                        "got ${result} and '${output}'\n${errors}")
  endif()
endfunction()

expect(0 "accepted " "Ana Ruiz")
expect(1 "no rule NARR" "Nobody")
