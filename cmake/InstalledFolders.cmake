# Where an installation has what lies elsewhere in Debian's packages.

# Completion of each shell, below the folder of shared data.
set(SIGNUTILS_SHELLS bash zsh fish)
set(SIGNUTILS_COMPLETION_FOLDERS
  bash-completion/completions zsh/site-functions fish/vendor_completions.d)

if(SIGNUTILS_DEBIAN_PACKAGES)
  # Configuration that an upgrade keeps, and modules where the interpreter looks for them.
  set(SIGNUTILS_CONFIG_FOLDER "${CMAKE_INSTALL_FULL_SYSCONFDIR}/signutils")
  set(SIGNUTILS_PYTHON_FOLDER "lib/python3/dist-packages")
  # No library that programs link, so it does not lie among these.
  set(SIGNUTILS_ENGINE_FOLDER "${CMAKE_INSTALL_LIBDIR}/signutils")
  list(TRANSFORM SIGNUTILS_COMPLETION_FOLDERS REPLACE site-functions vendor-completions)
  # The loader finds the libraries in the system's folder.
  set(CMAKE_SKIP_INSTALL_RPATH ON)
elseif(WIN32)
  set(SIGNUTILS_ENGINE_FOLDER "${CMAKE_INSTALL_BINDIR}")
  set(SIGNUTILS_CONFIG_FOLDER "${CMAKE_INSTALL_BINDIR}")
  set(SIGNUTILS_PYTHON_FOLDER "${CMAKE_INSTALL_DATADIR}/signutils/python")
else()
  set(SIGNUTILS_ENGINE_FOLDER "${CMAKE_INSTALL_LIBDIR}")
  # The display configuration lies where DoLoadPath looks when nothing else is said: in the folder of
  # the module that holds port/.
  set(SIGNUTILS_CONFIG_FOLDER "${CMAKE_INSTALL_LIBDIR}")
  set(SIGNUTILS_PYTHON_FOLDER "${CMAKE_INSTALL_DATADIR}/signutils/python")
endif()
