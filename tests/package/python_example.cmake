# Has the host in Python judge one order file, its amounts worked out from the file.
cmake_minimum_required(VERSION 3.25)

# expect(<connection string> <exit status> <text on standard output> <pattern of standard error>)
function(expect connexion_string status text errors_pattern)
  execute_process(COMMAND "${PYTHON}" "${EXAMPLE}" "${connexion_string}" "${ORDER}" "Ana Ruiz"
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  if(NOT result EQUAL status OR NOT output STREQUAL "${ORDER}: ${text}\n"
     OR NOT errors MATCHES "^${errors_pattern}$")
    message(FATAL_ERROR "expected ${status}, '${text}' and '${errors_pattern}', "
                        "got ${result}, '${output}' and '${errors}'")
  endif()
endfunction()

expect("Driver=SQLite3;Database=${BANK}" 0 "accepted, 350.50 EUR" "")
expect("" 3 "not run, 350.50 EUR" "DSN not defined\n")
