# All public headers compile behind the macros that hosts have, in both orders.
cmake_minimum_required(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/headers.cmake")

list(FILTER public_headers EXCLUDE REGEX "^port/(com|com_types|kernel)\\.h$")
list(REMOVE_ITEM public_headers amounts/engine_interfaces.h)
foreach(direction IN ITEMS forward backward)
  set(includes "")
  foreach(header IN LISTS public_headers)
    string(APPEND includes "#include \"${header}\"\n")
  endforeach()
  file(WRITE "${INCLUDE_FOLDER}/../all_headers.inc" "${includes}")
  execute_process(COMMAND ${compile} "-I${INCLUDE_FOLDER}/.." -fsyntax-only "${SOURCE}"
    COMMAND_ERROR_IS_FATAL ANY)
  list(REVERSE public_headers)
endforeach()
