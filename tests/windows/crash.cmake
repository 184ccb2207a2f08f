# Fails unless the program was started, and ended by its crash.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND "${WINE}" "${PROGRAM}" RESULT_VARIABLE status OUTPUT_VARIABLE said)
if(NOT said MATCHES "about to crash")
  message(FATAL_ERROR "the program was not started: '${said}', status ${status}")
endif()
if(status EQUAL 0)
  message(FATAL_ERROR "the program crashed, and its status is 0")
endif()
