# The Debian packages, a component each; scripts/package builds them. What is Debian's own (control
# scripts, copyright, change log, overrides) lies in packaging/debian.

set(debian "${PROJECT_SOURCE_DIR}/packaging/debian")
set(made "${PROJECT_BINARY_DIR}/debian")
set(library_package "libsignutils${PROJECT_VERSION_MAJOR}") # named after what programs load

set(CPACK_GENERATOR DEB)
signutils_debian_notice("${made}")
signutils_unset_notice(unset)
if(unset)
  message(WARNING "${unset}")
endif()
set(CPACK_PACKAGE_VENDOR "SignUtils maintainers")
set(CPACK_PACKAGE_CONTACT "${package_maintainer}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_COMPONENTS_ALL runtime development engine host python)
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_SET_DESTDIR ON) # configuration lies in /etc, outside the prefix
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_PACKAGE_SECTION admin)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# What the binaries need is read from them; of the packages made here that is stated, of one version.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(same_version "(= ${PROJECT_VERSION})")

# debian_package(<component> <package> SUMMARY <line> DESCRIPTION <text> [SECTION <section>]
#                [DEPENDS <list>] [RECOMMENDS <list>] [SUGGESTS <list>] [CONTROL <files>])
# Sets what CPack reads, and installs the package's documents.
macro(debian_package component package)
  cmake_parse_arguments(DEB "" "SUMMARY;DESCRIPTION;SECTION" "DEPENDS;RECOMMENDS;SUGGESTS;CONTROL"
    ${ARGN})
  string(TOUPPER ${component} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package})
  set(CPACK_DEBIAN_${upper}_DESCRIPTION "${DEB_SUMMARY}\n${DEB_DESCRIPTION}")
  foreach(field IN ITEMS DEPENDS RECOMMENDS SUGGESTS)
    list(JOIN DEB_${field} ", " CPACK_DEBIAN_${upper}_PACKAGE_${field})
  endforeach()
  if(DEB_SECTION)
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${DEB_SECTION})
  endif()
  set(CPACK_DEBIAN_${upper}_PACKAGE_CONTROL_EXTRA ${DEB_CONTROL})

  set(documents "${CMAKE_INSTALL_DATADIR}/doc/${package}")
  install(FILES "${made}/copyright" "${made}/changelog.gz"
    DESTINATION "${documents}" COMPONENT ${component})
  if(EXISTS "${debian}/${package}.lintian-overrides")
    install(FILES "${debian}/${package}.lintian-overrides"
      DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides" COMPONENT ${component}
      RENAME ${package})
  endif()
endmacro()

# Compressed as Debian wants it: without the time, so that the same sources give the same package.
configure_file("${debian}/changelog.in" "${made}/changelog" @ONLY)
execute_process(COMMAND gzip -9nf "${made}/changelog" COMMAND_ERROR_IS_FATAL ANY)
# Before 1.0 the interface may change with the minor version.
math(EXPR NEXT_MINOR "${PROJECT_VERSION_MINOR} + 1")
foreach(script IN ITEMS shlibs triggers)
  configure_file("${debian}/library.${script}.in" "${made}/${script}" @ONLY)
endforeach()
debian_package(runtime ${library_package}
  SUMMARY "signature rules of electronic-banking order files, library"
  DESCRIPTION "SignUtils decides whether the signers of an order file satisfy the rules
that are configured for its contract, records the decision over ODBC,
journals an audit event and can answer a refusal with a status report.
.
This package has the shared libraries."
  SECTION libs
  RECOMMENDS "signutils-engine ${same_version}"
  SUGGESTS libsqliteodbc odbc-postgresql odbc-mariadb
  CONTROL "${made}/shlibs" "${made}/triggers" "${debian}/preinst")

debian_package(development libsignutils-dev
  SUMMARY "signature rules of electronic-banking order files, development files"
  DESCRIPTION "Headers of SignUtils in C++ and C, its CMake package (SignUtils) and its
pkg-config file (signutils), with examples of hosts."
  SECTION libdevel
  DEPENDS "${library_package} ${same_version}")

debian_package(engine signutils-engine
  SUMMARY "signature rules of electronic-banking order files, conversion engine"
  DESCRIPTION "SignUtils loads this module to work amounts out of order files: pain.001,
pain.008, CFONB 160, CFONB 320 and MT 101. With the configuration of how
orders are displayed."
  SECTION libs
  DEPENDS "${library_package} ${same_version}"
  CONTROL "${debian}/conffiles" "${debian}/engine/triggers" "${debian}/preinst")

debian_package(host signcheck
  SUMMARY "judges the signatures of electronic-banking order files"
  DESCRIPTION "signcheck is the command-line host of SignUtils: it sets up the database,
judges order files, explains decisions, and shows history, events and
reports. A systemd service that is not enabled by default judges what
arrives in a folder."
  DEPENDS "${library_package} ${same_version}" "signutils-engine ${same_version}" adduser
  RECOMMENDS "libsqliteodbc | odbc-postgresql | odbc-mariadb"
  CONTROL "${debian}/preinst" "${debian}/postinst" "${debian}/prerm" "${debian}/postrm"
    "${debian}/host/triggers")

debian_package(python python3-signutils
  SUMMARY "signature rules of electronic-banking order files, Python package"
  DESCRIPTION "A typed package for hosts of SignUtils in Python 3."
  SECTION python
  DEPENDS "python3:any" "${library_package} ${same_version}"
  CONTROL "${debian}/python/postinst" "${debian}/python/prerm")
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SHLIBDEPS OFF)

# The service for drop folders, and what an administrator starts from.
configure_file("${PROJECT_SOURCE_DIR}/packaging/systemd/signcheck-watch@.service.in"
  "${made}/signcheck-watch@.service" @ONLY)
install(FILES "${made}/signcheck-watch@.service" DESTINATION /lib/systemd/system COMPONENT host)
install(DIRECTORY DESTINATION "${CMAKE_INSTALL_FULL_SYSCONFDIR}/signutils/watch" COMPONENT host)
install(FILES "${PROJECT_SOURCE_DIR}/packaging/systemd/watch.conf"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/signcheck/examples" COMPONENT host)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/orders"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/signcheck/examples" COMPONENT host)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/schema/" DESTINATION "${CMAKE_INSTALL_DATADIR}/signutils/schema"
  COMPONENT host FILES_MATCHING PATTERN "*.sql")
foreach(example IN ITEMS embed c_host engine)
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/${example}"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/libsignutils-dev/examples" COMPONENT development)
endforeach()

# Debian wants manual pages compressed. Runs behind what installs them.
install(CODE [[
  file(GLOB pages "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/share/man/man[1-8]/*.[1-8]")
  foreach(page IN LISTS pages)
    execute_process(COMMAND gzip -9nf "${page}" COMMAND_ERROR_IS_FATAL ANY)
  endforeach()
]] COMPONENT host)

include(CPack)
