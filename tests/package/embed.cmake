# Builds the example against the staged package and has it judge one file, twice.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")
file(WRITE "${WORK}/order.xml" "<Document/>\n")

if(VARIANT STREQUAL "FindPackage")
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -S "${EXAMPLE}" -B "${WORK}/build" -G "${GENERATOR}"
            "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_PREFIX_PATH=${STAGING}"
            "-DCMAKE_CXX_FLAGS=${FLAGS}"
    COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND "${CMAKE_COMMAND}" --build "${WORK}/build" COMMAND_ERROR_IS_FATAL ANY)
  set(judge "${WORK}/build/judge")
else()
  set(ENV{PKG_CONFIG_PATH} "${STAGING}/${LIBRARY_FOLDER}/pkgconfig")
  execute_process(COMMAND pkg-config --cflags --libs signutils
    OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  set(judge "${WORK}/judge")
  execute_process(
    COMMAND "${COMPILER}" -std=c++20 ${FLAGS} "${EXAMPLE}/judge.cpp" ${flags} -o "${judge}"
    COMMAND_ERROR_IS_FATAL ANY)
  set(ENV{LD_LIBRARY_PATH} "${STAGING}/${LIBRARY_FOLDER}")
endif()

set(ENV{SIGNUTILS_SPOOL} "${WORK}/spool")
set(ENV{SIGNUTILS_HANDOFF} "${WORK}/handoff")

# expect(<exit status> <text on standard output> <signer>)
function(expect status text signer)
  execute_process(
    COMMAND "${judge}" "Driver=SQLite3;Database=${BANK}" "${WORK}/order.xml" "${signer}"
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  if(NOT result EQUAL status OR NOT output STREQUAL "${WORK}/order.xml: ${text}\n")
    message(FATAL_ERROR "judging '${signer}': expected ${status} and '${text}', "
                        "got ${result} and '${output}'\n${errors}")
  endif()
endfunction()

expect(0 "accepted " "Ana Ruiz")
expect(1 "no rule NARR" "Nobody")
