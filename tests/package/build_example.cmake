# Builds an example against the staged package: as a CMake project or by pkg-config.
#
# build_example(<target>): EXAMPLE names its folder, VARIANT the way, WORK a folder for the build.
# Sets `example` to the program.
function(build_example target)
  file(REMOVE_RECURSE "${WORK}")
  file(MAKE_DIRECTORY "${WORK}")
  if(VARIANT STREQUAL "FindPackage")
    execute_process(
      COMMAND "${CMAKE_COMMAND}" -S "${EXAMPLE}" -B "${WORK}/build" -G "${GENERATOR}"
              "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_PREFIX_PATH=${STAGING}"
              "-DCMAKE_CXX_FLAGS=${FLAGS}"
      COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND "${CMAKE_COMMAND}" --build "${WORK}/build" COMMAND_ERROR_IS_FATAL ANY)
    set(example "${WORK}/build/${target}" PARENT_SCOPE)
    return()
  endif()
  set(ENV{PKG_CONFIG_PATH} "${STAGING}/${LIBRARY_FOLDER}/pkgconfig")
  execute_process(COMMAND pkg-config --cflags --libs signutils
    OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  execute_process(
    COMMAND "${COMPILER}" -std=c++20 ${FLAGS} "${EXAMPLE}/${target}.cpp" ${flags}
            -o "${WORK}/${target}"
    COMMAND_ERROR_IS_FATAL ANY)
  set(ENV{LD_LIBRARY_PATH} "${STAGING}/${LIBRARY_FOLDER}")
  set(example "${WORK}/${target}" PARENT_SCOPE)
endfunction()
