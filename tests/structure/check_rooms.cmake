# Checks the arrows between the rooms and where the platform may be named.
#
# cmake -DROOT=<folder that holds the rooms> -P check_rooms.cmake
#
# Prints one line for each finding and fails when there is one.

cmake_minimum_required(VERSION 3.25)

# What each room may include: whole rooms, or single headers of a room.
set(may_port "")
set(may_support port)
set(may_containers support port)
set(may_database support port)
set(may_services database support port)
set(may_signers database containers support)
# The amount conversions are a leaf of signutils/ that the rooms above may use.
set(may_rules signers database containers support signutils/amount_units.h)
set(may_amounts database containers support port signutils/amount_units.h)
set(may_psr services support)
set(may_signutils psr amounts rules signers services database containers support port)
set(may_engine support port amounts/engine_interfaces.h)
set(may_schema database support)
# The host judges through the public API only; a rule's limit reads as the leaf reads it.
set(may_host schema amounts database support port
  signutils/signutils.h signutils/check_outcome.h signutils/measures.h signutils/version.h
  signutils/amount_units.h signers/signer_info.h services/tag_rc.h containers/tarray.h
  # Pruning takes delivered lines out of the spool under the spool's own locks.
  services/event_line.h services/event_record.h services/event_spool.h services/sha256.h)

# Single files that may include less than their room.
set(may_signutils/amount_units.h support)
set(may_signutils/amount_units.cpp support)

set(rooms port support containers database services signers rules amounts psr signutils engine
  schema host)

# The export macro differs by platform; everything else that does lies in port/.
set(names_the_platform support/export.h)

set(platform_names
  "_WIN32|_WIN64|__WIN32__|_MSC_VER|__MINGW[0-9]*__|__CYGWIN__|__linux__|__linux|__unix__|__APPLE__|_POSIX_[A-Z_]+|__GLIBC__")
set(platform_headers
  "windows|winsock2?|winbase|winerror|objbase|oleauto|combaseapi|shlobj|io|direct|process|conio|unistd|pthread|dlfcn|fcntl|dirent|poll|spawn|semaphore|signal|pwd|grp|termios|langinfo|iconv|link|cxxabi|execinfo|ucontext|features|sys/[a-z_/]+|linux/[a-z_/]+|netinet/[a-z_]+|arpa/[a-z_]+")
set(odbc_headers "sql|sqlext|sqltypes|sqlucode|odbcinst|odbcinstext")

set(findings "")
set(files_seen 0)

function(report text)
  message("${text}")
  set(findings "${findings};x" PARENT_SCOPE)
endfunction()

# The room's own headers and those in its table.
function(check_room_include room file header)
  string(REGEX MATCH "^[a-z]+" target "${header}")
  set(allowed "${may_${room}}")
  if(DEFINED "may_${file}")
    set(allowed "${may_${file}}")
    string(REGEX REPLACE "\\.cpp$" ".h" own_header "${file}")
    if("${header}" STREQUAL "${own_header}")
      return()
    endif()
  elseif("${target}" STREQUAL "${room}")
    return()
  endif()
  if(NOT "${target}" IN_LIST allowed AND NOT "${header}" IN_LIST allowed)
    report("${file}: may not include \"${header}\"")
    set(findings "${findings}" PARENT_SCOPE)
  endif()
endfunction()

function(check_file room file)
  file(STRINGS "${ROOT}/${file}" includes REGEX "^[ \t]*#[ \t]*include")
  foreach(line IN LISTS includes)
    if("${line}" MATCHES "\"([^\"]+)\"")
      set(header "${CMAKE_MATCH_1}")
      string(REGEX MATCH "^[a-z]+/" folder "${header}")
      string(REPLACE "/" "" folder "${folder}")
      if("${folder}" IN_LIST rooms)
        check_room_include("${room}" "${file}" "${header}")
      else()
        report("${file}: \"${header}\" does not name its room")
      endif()
    elseif("${line}" MATCHES "<(${platform_headers})\\.h>" AND NOT "${room}" STREQUAL "port")
      report("${file}: only port/ includes the platform's <${CMAKE_MATCH_1}.h>")
    elseif("${line}" MATCHES "<(${odbc_headers})\\.h>" AND NOT "${room}" STREQUAL "database")
      report("${file}: only database/ includes ODBC's <${CMAKE_MATCH_1}.h>")
    endif()
  endforeach()

  if(NOT "${room}" STREQUAL "port" AND NOT "${file}" IN_LIST names_the_platform)
    file(STRINGS "${ROOT}/${file}" platform REGEX "^[ \t]*#.*(${platform_names})([^A-Za-z0-9_]|$)")
    foreach(line IN LISTS platform)
      report("${file}: only port/ tests the platform: ${line}")
    endforeach()
  endif()
  set(findings "${findings}" PARENT_SCOPE)
endfunction()

foreach(room IN LISTS rooms)
  file(GLOB_RECURSE sources RELATIVE "${ROOT}"
    "${ROOT}/${room}/*.h" "${ROOT}/${room}/*.cpp" "${ROOT}/${room}/*.h.in")
  foreach(file IN LISTS sources)
    check_file("${room}" "${file}")
    math(EXPR files_seen "${files_seen} + 1")
  endforeach()
endforeach()

# A folder given wrongly holds no file at all and would pass.
if(files_seen EQUAL 0)
  message(FATAL_ERROR "no source file below ${ROOT}")
endif()
list(LENGTH findings count)
if(count GREATER 0)
  message(FATAL_ERROR "The rooms' order is broken (see the lines above).")
endif()
message("${files_seen} files keep to the order of the rooms.")
