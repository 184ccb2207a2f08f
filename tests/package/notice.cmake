# What the packages say of their maintainer and their licence, as a builder settles it.
cmake_minimum_required(VERSION 3.25)

include("${SOURCES}/cmake/PackageNotice.cmake")
if(ONCE)
  signutils_debian_notice("${WORK}")
  signutils_unset_notice(unset)
  message("${package_maintainer}|${unset}")
  return()
endif()

file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")
file(WRITE "${WORK}/licence.txt" "\nYou may use it; see [1].  \r\n\n\n\n  @PROJECT_NAME@ stays.\n\n")
file(WRITE "${WORK}/empty.txt" " \n")

# expect(<exit status> <regular expression> [-D...]): what settling the notice says
function(expect status text)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -DONCE=ON "-DSOURCES=${SOURCES}" "-DWORK=${WORK}" ${ARGN}
            -P "${CMAKE_CURRENT_FUNCTION_LIST_FILE}"
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  string(REGEX REPLACE "[ \n]+" " " told "${output}${errors}") # messages are filled to lines
  if(NOT result EQUAL status OR NOT told MATCHES "${text}")
    message(FATAL_ERROR "${ARGN}: expected ${status} and '${text}', got ${result} and '${told}'")
  endif()
endfunction()

# expect_copyright(<text>): part of the file that was written last
function(expect_copyright text)
  file(READ "${WORK}/copyright" written)
  string(FIND "${written}" "${text}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "the copyright file does not say '${text}':\n${written}")
  endif()
endfunction()

expect(0 "nobody named <unset@signutils.invalid>.SIGNUTILS_MAINTAINER is not set: .*SIGNUTILS_LICENCE_FILE is not set: ")
expect_copyright("Upstream-Contact: nobody named <unset@signutils.invalid>")
expect_copyright("License: SignUtils\n No licence was stated when these packages were built.")

expect(0 "^Ana Ruiz <ana@bank.example>.SIGNUTILS_LICENCE_FILE is not set"
  "-DSIGNUTILS_MAINTAINER=Ana Ruiz <ana@bank.example>")
expect(0 "^Ana Ruiz <ana@bank.example>. ?$"
  "-DSIGNUTILS_MAINTAINER=Ana Ruiz <ana@bank.example>" "-DSIGNUTILS_LICENCE_FILE=${WORK}/licence.txt")
expect_copyright("Upstream-Contact: Ana Ruiz <ana@bank.example>\n")
expect_copyright("License: SignUtils\n You may use it; see [1].\n .\n .\n .\n   @PROJECT_NAME@ stays.\n")

foreach(none IN ITEMS "Ana Ruiz" "ana@bank.example" "<ana@bank.example>" "Ana <ana>" "Ana <a@b> <c@d>")
  expect(1 "SIGNUTILS_MAINTAINER is '${none}', which is no name with an address"
    "-DSIGNUTILS_MAINTAINER=${none}")
endforeach()
expect(1 "which is no file" "-DSIGNUTILS_LICENCE_FILE=${WORK}/none.txt")
expect(1 "which is no file" "-DSIGNUTILS_LICENCE_FILE=${WORK}")
expect(1 "which is empty" "-DSIGNUTILS_LICENCE_FILE=${WORK}/empty.txt")
