# The public headers of an installation, as they are included.

file(GLOB_RECURSE public_headers RELATIVE "${INCLUDE_FOLDER}" "${INCLUDE_FOLDER}/*.h")
list(SORT public_headers)
if(NOT "signutils/signutils.h" IN_LIST public_headers)
  message(FATAL_ERROR "no public headers below ${INCLUDE_FOLDER}")
endif()
# A source of this script's own: the tests of the headers run side by side.
get_filename_component(script "${CMAKE_SCRIPT_MODE_FILE}" NAME_WE)
set(source "${INCLUDE_FOLDER}/../${script}.cpp")
set(compile "${COMPILER}" -std=c++20 -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror
  "-I${INCLUDE_FOLDER}" -x c++)

# Headers of port/'s own surface and of the engine's interfaces: there for hosts that ask for them,
# which then are hosts without windows.h's macros.
set(asked_for "^(port/.*|amounts/engine_interfaces\\.h)$")
