# Installs the build into a staging folder and makes the bank that the examples judge by.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${STAGING}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${STAGING}"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)

include("${CMAKE_CURRENT_LIST_DIR}/make_bank.cmake")
