# Every installed file belongs to a component, so that one of the Debian packages has it.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${WORK}")
foreach(component IN ITEMS runtime development engine host python)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${WORK}" --component ${component}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endforeach()

file(GLOB_RECURSE all RELATIVE "${STAGING}" "${STAGING}/*")
file(GLOB_RECURSE packaged RELATIVE "${WORK}" "${WORK}/*")
if(NOT packaged)
  message(FATAL_ERROR "nothing was installed into ${WORK}")
endif()
list(REMOVE_ITEM all ${packaged})
if(all)
  list(JOIN all "\n  " all)
  message(FATAL_ERROR "no component has these files; name one in their install(): \n  ${all}")
endif()
