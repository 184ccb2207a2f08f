# Who answers for the packages, and the licence that they are handed out under. Whoever builds them says
# so here and nowhere else; the project itself states neither.

set(SIGNUTILS_MAINTAINER "" CACHE STRING "Who answers for the packages: Name <address>")
set(SIGNUTILS_LICENCE_FILE "" CACHE FILEPATH "Text of the licence that the packages are under, UTF-8")

# Sets <text> to what is not said yet; empty when all is.
function(signutils_unset_notice text)
  set(unset "")
  if(SIGNUTILS_MAINTAINER STREQUAL "")
    string(APPEND unset "SIGNUTILS_MAINTAINER is not set: the packages name nobody who answers for "
      "them. Configure with -DSIGNUTILS_MAINTAINER=\"Name <address>\" before you hand them out.\n")
  endif()
  if(SIGNUTILS_LICENCE_FILE STREQUAL "")
    string(APPEND unset "SIGNUTILS_LICENCE_FILE is not set: the packages state no licence. "
      "Configure with -DSIGNUTILS_LICENCE_FILE=FILE before you hand them out.\n")
  endif()
  set(${text} "${unset}" PARENT_SCOPE)
endfunction()

# Refuses what is said and cannot be used.
function(signutils_check_notice)
  if(NOT SIGNUTILS_MAINTAINER STREQUAL "" AND
      NOT SIGNUTILS_MAINTAINER MATCHES "^[^<>@\n]*[^<>@ \n] <[^<>@ \n]+@[^<>@ \n]+>$")
    message(FATAL_ERROR "SIGNUTILS_MAINTAINER is '${SIGNUTILS_MAINTAINER}', which is no name with an "
      "address. Give it as in \"Ana Ruiz <ana@bank.example>\".")
  endif()
  if(NOT SIGNUTILS_LICENCE_FILE STREQUAL "")
    if(NOT EXISTS "${SIGNUTILS_LICENCE_FILE}" OR IS_DIRECTORY "${SIGNUTILS_LICENCE_FILE}")
      message(FATAL_ERROR "SIGNUTILS_LICENCE_FILE names '${SIGNUTILS_LICENCE_FILE}', which is no file. "
        "Give the full path of the licence's text.")
    endif()
    file(READ "${SIGNUTILS_LICENCE_FILE}" licence)
    if(NOT licence MATCHES "[^ \t\r\n]")
      message(FATAL_ERROR "SIGNUTILS_LICENCE_FILE names '${SIGNUTILS_LICENCE_FILE}', which is empty. "
        "Give the licence's text.")
    endif()
  endif()
endfunction()

# Sets <text> to the content of a file as a field of Debian's goes on: a blank before each line, a point
# in the place of an empty one.
function(signutils_debian_field file text)
  file(READ "${file}" content)
  string(REPLACE "\r\n" "\n" content "${content}")
  string(REGEX REPLACE "[ \t]+\n" "\n" content "${content}\n")
  string(REGEX REPLACE "^\n+" "" content "${content}")
  string(REGEX REPLACE "\n+$" "" content "${content}")
  string(REPLACE "\n" "\n " content " ${content}")
  foreach(pass IN ITEMS 1 2) # lines that follow one another share an end
    string(REPLACE "\n \n" "\n .\n" content "${content}")
  endforeach()
  set(${text} "${content}" PARENT_SCOPE)
endfunction()

# Writes <folder>/copyright and sets package_maintainer; what is not said is told as such.
function(signutils_debian_notice folder)
  signutils_check_notice()
  set(package_maintainer "nobody named <unset@signutils.invalid>")
  if(NOT SIGNUTILS_MAINTAINER STREQUAL "")
    set(package_maintainer "${SIGNUTILS_MAINTAINER}")
  endif()
  string(CONCAT licence_text " No licence was stated when these packages were built. Ask whoever\n"
    " supplied them what you may do with them.")
  if(NOT SIGNUTILS_LICENCE_FILE STREQUAL "")
    signutils_debian_field("${SIGNUTILS_LICENCE_FILE}" licence_text)
  endif()
  configure_file("${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../packaging/debian/copyright.in"
    "${folder}/copyright" @ONLY)
  set(package_maintainer "${package_maintainer}" PARENT_SCOPE)
endfunction()
