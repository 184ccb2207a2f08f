# Builds an example against the staged package and has it judge one file.
cmake_minimum_required(VERSION 3.25)

include("${CMAKE_CURRENT_LIST_DIR}/build_example.cmake")
build_example(judge)
set(order "${WORK}/order.xml")
file(WRITE "${order}" "<Document/>\n")

set(ENV{SIGNUTILS_SPOOL} "${WORK}/spool")
set(ENV{SIGNUTILS_HANDOFF} "${WORK}/handoff")

# expect(<connection string> <signer> <exit status> <text on standard output> <on standard error>)
function(expect connexion_string signer status text error_text)
  execute_process(COMMAND ${example} "${connexion_string}" "${order}" "${signer}"
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  string(REPLACE "\r\n" "\n" output "${output}") # of hosts for Windows
  string(REPLACE "\r\n" "\n" errors "${errors}")
  if(NOT result EQUAL status OR NOT output STREQUAL text OR NOT errors STREQUAL error_text)
    message(FATAL_ERROR "judging '${signer}': expected ${status}, '${text}' and '${error_text}', "
                        "got ${result}, '${output}' and '${errors}'")
  endif()
endfunction()

set(connexion_string "Driver=SQLite3;Database=${BANK}")
expect("${connexion_string}" "Ana Ruiz" 0 "${order}: accepted \n" "")
expect("${connexion_string}" "Nobody" 1 "${order}: no rule NARR\n" "")
expect("" "Ana Ruiz" 3 "" "not judged: DSN not defined\n")

execute_process(COMMAND ${example} "too few" RESULT_VARIABLE result ERROR_VARIABLE errors)
if(NOT result EQUAL 64 OR NOT errors MATCHES "^usage: judge <connection string> ")
  message(FATAL_ERROR "called with too few arguments: got ${result} and '${errors}'")
endif()
