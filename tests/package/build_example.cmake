# Builds an example against the staged package.
#
# build_example(<target>): EXAMPLE names its folder, SOURCE its source, WORK a folder for the build,
# VARIANT the way: as a CMake project (FindPackage) or by pkg-config (PkgConfig) in LANGUAGE, C or
# CXX, of STANDARD; in CSharp or Pascal by what the host declares itself. Sets `example` to the
# command that runs it.

function(build_by_FindPackage target)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -S "${EXAMPLE}" -B "${WORK}/build" -G "${GENERATOR}"
            "-DCMAKE_${LANGUAGE}_COMPILER=${COMPILER}" "-DCMAKE_PREFIX_PATH=${STAGING}"
            "-DCMAKE_${LANGUAGE}_FLAGS=${FLAGS}"
    COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND "${CMAKE_COMMAND}" --build "${WORK}/build" COMMAND_ERROR_IS_FATAL ANY)
  set(example "${WORK}/build/${target}" PARENT_SCOPE)
endfunction()

function(build_by_PkgConfig target)
  set(ENV{PKG_CONFIG_PATH} "${STAGING}/${LIBRARY_FOLDER}/pkgconfig")
  execute_process(COMMAND pkg-config --cflags --libs signutils
    OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  execute_process(
    COMMAND "${COMPILER}" -std=${STANDARD} ${FLAGS} "${EXAMPLE}/${SOURCE}" ${flags}
            -o "${WORK}/${target}"
    COMMAND_ERROR_IS_FATAL ANY)
  set(ENV{LD_LIBRARY_PATH} "${STAGING}/${LIBRARY_FOLDER}")
  set(example "${WORK}/${target}" PARENT_SCOPE)
endfunction()

function(build_by_CSharp target)
  execute_process(COMMAND "${COMPILER}" "-out:${WORK}/${target}.exe" "${EXAMPLE}/${SOURCE}"
    COMMAND_ERROR_IS_FATAL ANY)
  set(ENV{LD_LIBRARY_PATH} "${STAGING}/${LIBRARY_FOLDER}")
  set(example "${RUNTIME}" "${WORK}/${target}.exe" PARENT_SCOPE)
endfunction()

function(build_by_Pascal target)
  execute_process(COMMAND "${COMPILER}" -v0 "-Fl${STAGING}/${LIBRARY_FOLDER}" "-FE${WORK}"
            "${EXAMPLE}/${SOURCE}"
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  set(ENV{LD_LIBRARY_PATH} "${STAGING}/${LIBRARY_FOLDER}")
  set(example "${WORK}/${target}" PARENT_SCOPE)
endfunction()

macro(build_example target)
  file(REMOVE_RECURSE "${WORK}")
  file(MAKE_DIRECTORY "${WORK}")
  cmake_language(CALL build_by_${VARIANT} ${target})
endmacro()
