# Installs the build into a staging folder and makes the bank that the example judges by.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${STAGING}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${STAGING}"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)

file(REMOVE "${BANK}")
file(GLOB scripts "${SCHEMA}/[0-9]*.sql")
list(SORT scripts)
foreach(script IN LISTS scripts ITEMS "${CONTRACT}")
  execute_process(COMMAND "${SQLITE3}" -bail "${BANK}" INPUT_FILE "${script}"
    COMMAND_ERROR_IS_FATAL ANY)
endforeach()
