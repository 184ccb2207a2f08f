# Builds a host with a conversion engine of its own against the staged package and has it work out
# the amounts of a file.
cmake_minimum_required(VERSION 3.25)

include("${CMAKE_CURRENT_LIST_DIR}/build_example.cmake")
build_example(own_engine)

# expect(<order file's text> <exit status> <pattern of standard output>)
function(expect lines status text)
  file(WRITE "${WORK}/order.txt" "${lines}")
  execute_process(COMMAND "${example}" "${WORK}/order.txt"
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  if(NOT result EQUAL status OR NOT output MATCHES "^${text}\n$")
    message(FATAL_ERROR "expected ${status} and /${text}/, got ${result} and '${output}'\n${errors}")
  endif()
  file(GLOB left "${WORK}/order.txt.veu*")
  if(left)
    message(FATAL_ERROR "work files are left: ${left}")
  endif()
endfunction()

expect("12.50 EUR\n1000.25 EUR\n0.05 EUR\n" 0 "3 orders, total 1012\\.8 EUR, largest 1000\\.25")
expect("12,50 EUR\n" 1 "not converted: Not a file of amounts n.+1 ")
