# What an installation holds: the library with its headers, and how other builds find it. Components:
# runtime (the libraries), development, engine, host (signcheck) and python.

include(CMakePackageConfigHelpers)

set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/SignUtils")

set_target_properties(SignUtils PROPERTIES INSTALL_RPATH "$ORIGIN")
# What programs load, and what they are built with.
set(libraries
  RUNTIME COMPONENT runtime
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development)
install(TARGETS SignUtils EXPORT SignUtilsTargets ${libraries})
if(NOT WIN32) # where it is a library of its own
  set_target_properties(signutils_port PROPERTIES EXPORT_NAME Port)
  target_include_directories(signutils_port INTERFACE
    "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>")
  install(TARGETS signutils_port EXPORT SignUtilsTargets ${libraries})
endif()
install(EXPORT SignUtilsTargets
  NAMESPACE SignUtils::
  DESTINATION "${package_folder}"
  COMPONENT development)

# Rooms keep their names, so that "signutils/signutils.h" is found below the include folder. The
# headers of port/ and the engine's interfaces are no part of the others: a host that plugs in an
# engine of its own includes them for itself.
file(STRINGS "${PROJECT_SOURCE_DIR}/cmake/public_headers.txt" public_headers)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
  "${PROJECT_SOURCE_DIR}/cmake/public_headers.txt")
foreach(header IN LISTS public_headers)
  cmake_path(GET header PARENT_PATH room)
  install(FILES "${PROJECT_SOURCE_DIR}/${header}"
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${room}" COMPONENT development)
endforeach()
install(FILES "${PROJECT_BINARY_DIR}/generated/signutils/version.h"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/signutils" COMPONENT development)

# The package for hosts in Python; they name its folder in PYTHONPATH or copy it.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/bindings/python/signutils"
  DESTINATION "${SIGNUTILS_PYTHON_FOLDER}"
  COMPONENT python
  FILES_MATCHING PATTERN "*.py" PATTERN "py.typed")

configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/cmake/SignUtilsConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/generated/SignUtilsConfig.cmake"
  INSTALL_DESTINATION "${package_folder}")
write_basic_package_version_file(
  "${PROJECT_BINARY_DIR}/generated/SignUtilsConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES
  "${PROJECT_BINARY_DIR}/generated/SignUtilsConfig.cmake"
  "${PROJECT_BINARY_DIR}/generated/SignUtilsConfigVersion.cmake"
  DESTINATION "${package_folder}"
  COMPONENT development)

# Paths relative to the file itself, so that the installed tree can be moved.
cmake_path(SET pkgconfig_folder "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
cmake_path(RELATIVE_PATH "CMAKE_INSTALL_PREFIX" BASE_DIRECTORY
  "${CMAKE_INSTALL_PREFIX}/${pkgconfig_folder}" OUTPUT_VARIABLE prefix_from_pkgconfig)
set(pkgconfig_libraries "-lsignutils")
if(NOT WIN32)
  string(APPEND pkgconfig_libraries " -lsignutils-port")
endif()
configure_file("${PROJECT_SOURCE_DIR}/cmake/signutils.pc.in"
  "${PROJECT_BINARY_DIR}/generated/signutils.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/generated/signutils.pc"
  DESTINATION "${pkgconfig_folder}" COMPONENT development)

include(PackageNotice)
if(WIN32)
  signutils_check_notice()
  if(NOT SIGNUTILS_LICENCE_FILE STREQUAL "")
    install(FILES "${SIGNUTILS_LICENCE_FILE}" DESTINATION . RENAME LICENCE.txt)
  endif()
  signutils_unset_notice(unset)
  if(unset) # told where the package is made, not in every build
    set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_BINARY_DIR}/generated/warn_of_unset.cmake")
    file(WRITE "${CPACK_PRE_BUILD_SCRIPTS}" "message(WARNING [==[${unset}]==])\n")
  endif()
  # What hosts of other build systems need, and the package to hand out.
  install(FILES "${PROJECT_SOURCE_DIR}/docs/windows.md" DESTINATION . RENAME README.md)
  install(FILES "${PROJECT_SOURCE_DIR}/docs/integrators.md" DESTINATION .)
  foreach(host IN ITEMS c_host csharp_host delphi_host python_host)
    install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/${host}" DESTINATION examples
      FILES_MATCHING REGEX "\\.(c|cs|dpr|py|txt)$")
  endforeach()
  install(FILES "${PROJECT_SOURCE_DIR}/signutils/exports.def"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}" RENAME signutils.def)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME "signutils-${PROJECT_VERSION}-win64")
  set(CPACK_STRIP_FILES ON)
  include(CPack)
elseif(SIGNUTILS_DEBIAN_PACKAGES)
  include(DebianPackages)
endif()
