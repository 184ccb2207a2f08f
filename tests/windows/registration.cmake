# Registers the engine by regsvr32 (or takes it off again) and looks up what the registry then says.
cmake_minimum_required(VERSION 3.25)

if(REGISTER)
  set(options /s)
  set(expected 0)
else()
  set(options /u /s)
  set(expected 1)
endif()
execute_process(COMMAND "${WINE}" regsvr32 ${options} "${ENGINE}" RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "regsvr32 ${options} ended with ${result}")
endif()

# The class identifiers as the header writes them.
file(STRINGS "${INTERFACES}" lines REGEX "^    0x[0-9A-F]+, 0x")
set(classes "")
foreach(line IN LISTS lines)
  string(REGEX MATCHALL "0x([0-9A-F]+)" numbers "${line}")
  list(TRANSFORM numbers REPLACE "0x" "")
  list(GET numbers 0 1 2 first)
  list(SUBLIST numbers 3 2 family)
  list(SUBLIST numbers 5 6 rest)
  list(JOIN first "-" first)
  list(JOIN family "" family)
  list(JOIN rest "" rest)
  list(APPEND classes "{${first}-${family}-${rest}}")
endforeach()
list(SUBLIST classes 0 2 classes) # the two classes stand before the two interfaces

foreach(class IN LISTS classes)
  execute_process(
    COMMAND "${WINE}" reg query "HKLM\\Software\\Classes\\CLSID\\${class}\\InprocServer32" /s
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_QUIET)
  if(NOT result EQUAL expected)
    message(FATAL_ERROR "reg query of ${class} ended with ${result}, not ${expected}\n${output}")
  endif()
  if(REGISTER AND NOT output MATCHES "signutils-engine\\.dll.*ThreadingModel[^\n]*Both")
    message(FATAL_ERROR "${class} is not registered as it should be:\n${output}")
  endif()
endforeach()
