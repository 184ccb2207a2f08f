# Shows that check_rooms.cmake finds what it is there to find: a small tree is written for each
# rule and must be refused with the line that names the file.
#
# cmake -DCHECK=<check_rooms.cmake> -DWORK=<folder> -P refuses_violations.cmake
cmake_minimum_required(VERSION 3.25)

set(failures 0)

# expect(<passes|line of the finding> <file> <contents>)
function(expect expected file contents)
  file(REMOVE_RECURSE "${WORK}")
  file(WRITE "${WORK}/${file}" "${contents}\n")
  execute_process(COMMAND "${CMAKE_COMMAND}" -DROOT=${WORK} -P "${CHECK}"
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if("${expected}" STREQUAL "passes")
    if(result EQUAL 0)
      return()
    endif()
  else()
    string(FIND "${output}" "${expected}" position)
    if(NOT result EQUAL 0 AND position GREATER_EQUAL 0)
      return()
    endif()
  endif()
  message("${file} with '${contents}': expected '${expected}', got ${result}:\n${output}")
  math(EXPR failures "${failures} + 1")
  set(failures "${failures}" PARENT_SCOPE)
endfunction()

expect("passes" "rules/a.cpp" "#include \"signers/signer_info.h\"")
expect("passes" "rules/a.cpp" "#include \"signutils/amount_units.h\"")
expect("passes" "signutils/amount_units.cpp" "#include \"signutils/amount_units.h\"")
expect("passes" "database/a.cpp" "#include <sqlext.h>")
expect("passes" "port/a.cpp" "#if defined(_WIN32)\n#include <windows.h>\n#endif")
expect("passes" "support/export.h" "#if defined(_WIN32)\n#endif")
expect("passes" "host/main.cpp" "#include \"signutils/signutils.h\"")

expect("support/a.cpp: may not include \"database/cdatabase.h\""
  "support/a.cpp" "#include \"database/cdatabase.h\"")
expect("rules/a.h: may not include \"signutils/signutils.h\""
  "rules/a.h" "  #  include \"signutils/signutils.h\"")
expect("psr/a.cpp: may not include \"rules/verdict.h\""
  "psr/a.cpp" "#include \"rules/verdict.h\"")
expect("host/main.cpp: may not include \"rules/verdict.h\""
  "host/main.cpp" "#include \"rules/verdict.h\"")
expect("host/main.cpp: may not include \"signutils/check_run.h\""
  "host/main.cpp" "#include \"signutils/check_run.h\"")
expect("signutils/amount_units.cpp: may not include \"database/cdatabase.h\""
  "signutils/amount_units.cpp" "#include \"database/cdatabase.h\"")
expect("rules/a.cpp: \"verdict.h\" does not name its room"
  "rules/a.cpp" "#include \"verdict.h\"")
expect("rules/a.cpp: only database/ includes ODBC's <sql.h>"
  "rules/a.cpp" "#include <sql.h>")
expect("rules/a.cpp: only port/ includes the platform's <unistd.h>"
  "rules/a.cpp" "#include <unistd.h>")
expect("rules/a.cpp: only port/ includes the platform's <sys/stat.h>"
  "rules/a.cpp" "#include <sys/stat.h>")
expect("rules/a.cpp: only port/ tests the platform: #ifdef __linux__"
  "rules/a.cpp" "#ifdef __linux__\n#endif")
expect("rules/a.cpp: only port/ tests the platform: #if defined(_WIN32)"
  "rules/a.cpp" "#if defined(_WIN32)\n#endif")
expect("no source file below" "elsewhere/a.cpp" "#include <string>")

file(REMOVE_RECURSE "${WORK}")
if(failures GREATER 0)
  message(FATAL_ERROR "${failures} expectations failed")
endif()
