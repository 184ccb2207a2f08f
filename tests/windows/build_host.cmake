# How hosts of other compilers and languages are built for Windows; see build_example.cmake. STAGING is
# the unpacked package, of which a host needs the library beside it.

# What the host is run by, and the library where Windows looks for it.
macro(run_under_wine target)
  file(COPY "${STAGING}/bin/signutils.dll" DESTINATION "${WORK}")
  set(example "${WINE}" "${WORK}/${target}.exe" PARENT_SCOPE)
endmacro()

# In C, with an import library made from the list of exports, as other compilers make theirs.
function(build_by_ExportList target)
  execute_process(COMMAND "${DLLTOOL}" -d "${STAGING}/lib/signutils.def" -D signutils.dll
            -l "${WORK}/import.a"
    COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND "${COMPILER}" -std=c11 -static "${EXAMPLE}/${SOURCE}"
            -I "${STAGING}/include" "${WORK}/import.a" -o "${WORK}/${target}.exe"
    COMMAND_ERROR_IS_FATAL ANY)
  run_under_wine(${target})
endfunction()

# In Pascal, whose compiler brings a linker of its own. Its units for Windows come as source only.
function(build_by_FreePascal target)
  set(rtl "${PASCAL_SOURCES}/rtl")
  set(options -n -v0 -Twin64 "-FU${WORK}" "-FE${WORK}")
  foreach(folder IN ITEMS win64 win win/wininc inc x86_64 objpas objpas/sysutils)
    list(APPEND options "-Fi${rtl}/${folder}")
  endforeach()
  execute_process(COMMAND "${COMPILER}" ${options} -Us -Sg "${rtl}/win64/system.pp"
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  foreach(folder IN ITEMS win64 win inc objpas)
    list(APPEND options "-Fu${rtl}/${folder}")
  endforeach()
  execute_process(COMMAND "${COMPILER}" ${options} "${EXAMPLE}/${SOURCE}"
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  run_under_wine(${target})
endfunction()
