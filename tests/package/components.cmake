# Every installed file belongs to a component, so that one of the Debian packages has it.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${WORK}")
# Of its own, since other tests write into the staged one.
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${WORK}/all"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
foreach(component IN ITEMS runtime development engine host python)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${WORK}/parts" --component ${component}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endforeach()

file(GLOB_RECURSE all RELATIVE "${WORK}/all" "${WORK}/all/*")
file(GLOB_RECURSE packaged RELATIVE "${WORK}/parts" "${WORK}/parts/*")
if(NOT packaged)
  message(FATAL_ERROR "nothing was installed into ${WORK}")
endif()
list(REMOVE_ITEM all ${packaged})
if(all)
  list(JOIN all "\n  " all)
  message(FATAL_ERROR "no component has these files; name one in their install(): \n  ${all}")
endif()
