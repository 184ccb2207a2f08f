# The installed signcheck finds the installed conversion engine: it judges an order file on the
# amounts in it.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")
configure_file("${ORDER}" "${WORK}/order.xml" COPYONLY)
set(ENV{SIGNUTILS_SPOOL} "${WORK}/spool")
set(ENV{SIGNUTILS_HANDOFF} "${WORK}/handoff")
set(ENV{SIGNUTILS_CONFIG} "")
set(ENV{SIGNUTILS_COM_REGISTRY} "")
set(ENV{SIGNCHECK_DB} "Driver=SQLite3;Database=${WORK}/bank.db")

execute_process(COMMAND "${SIGNCHECK}" init --sample OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(
  COMMAND "${SIGNCHECK}" check "${WORK}/order.xml" --partner DUPONTSA --service CCU --client TRESOR
          --protocol 9 --type 1 --signers "Siobhan OBrien" --format auto
  RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
if(NOT result EQUAL 0 OR NOT output MATCHES "total 350\\.50 EUR, largest order 250\\.50, 2 orders")
  message(FATAL_ERROR "got ${result}\n${output}\n${errors}")
endif()

# Nor does it need a setting to find what its order display shows.
if(NOT EXISTS "/etc/signutils/CtlVEU.INI")
  execute_process(COMMAND "${SIGNCHECK}" display "${WORK}/order.xml" --json
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  string(FIND "${output}" "\"profile\": \"${PROFILE}\"" position)
  if(NOT result EQUAL 0 OR position LESS 0)
    message(FATAL_ERROR "display: got ${result}\n${output}\n${errors}")
  endif()
endif()
