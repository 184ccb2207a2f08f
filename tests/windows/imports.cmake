# Fails when a module needs a library that is no part of Windows.
cmake_minimum_required(VERSION 3.25)

set(of_windows advapi32 bcrypt kernel32 msvcrt odbc32 ole32 oleaut32 shell32 user32 ws2_32)

execute_process(COMMAND "${OBJDUMP}" -p "${MODULE}"
  OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "DLL Name: [^\n]+" lines "${headers}")
if(NOT lines)
  message(FATAL_ERROR "${MODULE} seems to need no library at all")
endif()
foreach(line IN LISTS lines)
  string(REGEX REPLACE "DLL Name: (.*)\\.[A-Za-z]+$" "\\1" name "${line}")
  string(TOLOWER "${name}" name)
  message("${name}")
  if(NOT name IN_LIST of_windows)
    message(FATAL_ERROR "${MODULE} needs ${line}")
  endif()
endforeach()
