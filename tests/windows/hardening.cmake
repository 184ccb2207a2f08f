# Fails when a module lacks a protection that cmake/Hardening.cmake asks for. With MISSING, a program
# without that protection is built first and has to be found out.
cmake_minimum_required(VERSION 3.25)

if(MISSING)
  set(MODULE "${WORK}/without.exe")
  file(MAKE_DIRECTORY "${WORK}")
  file(WRITE "${WORK}/without.cpp" "#include <cstdio>\n#include <cstring>\n"
    "int main(int, char** texts) { char copy[8]; std::strcpy(copy, texts[0]); return std::puts(copy); }\n")
  execute_process(
    COMMAND "${COMPILER}" -O2 -static -fstack-protector-strong -D_FORTIFY_SOURCE=2 ${WITHOUT}
            "${WORK}/without.cpp" -o "${MODULE}"
    COMMAND_ERROR_IS_FATAL ANY)
endif()

set(findings "")
function(must_have wanted what text)
  if(NOT text MATCHES "${wanted}")
    set(findings "${findings}${what}\n" PARENT_SCOPE)
  endif()
endfunction()

execute_process(COMMAND "${OBJDUMP}" -p "${MODULE}" OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${OBJDUMP}" -h "${MODULE}" OUTPUT_VARIABLE sections COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${OBJDUMP}" -d --no-show-raw-insn "${MODULE}"
  COMMAND grep -c "call.*<__stack_chk_fail>"
  OUTPUT_VARIABLE protected RESULTS_VARIABLE statuses)
list(GET statuses 0 status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${MODULE} cannot be read")
endif()
execute_process(COMMAND "${NM}" "${MODULE}" OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
must_have("DYNAMIC_BASE" "is loaded at a fixed address" "${headers}")
must_have("HIGH_ENTROPY_VA" "is loaded below 4 GiB" "${headers}")
must_have("NX_COMPAT" "may execute its data" "${headers}")
must_have(" \\.reloc " "cannot be moved" "${sections}")
must_have(" __[a-z]+_chk\n" "calls no checked function of the C library" "${symbols}")
if(protected LESS_EQUAL 1) # the one in the compiler's library
  string(APPEND findings "has no stack protector\n")
endif()
if(sections MATCHES "LOAD, CODE") # without READONLY between the two
  string(APPEND findings "has memory both writable and executable\n")
endif()

message("${MODULE}:\n${findings}")
if(MISSING)
  if(NOT findings MATCHES "${MISSING}")
    message(FATAL_ERROR "built with ${WITHOUT}: expected '${MISSING}'")
  endif()
elseif(findings)
  message(FATAL_ERROR "a protection is missing")
endif()
