# Debian's g++-mingw-w64-x86-64-posix. The libraries that Debian has for its own system only are
# made by scripts/lib/windows_packages.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

get_filename_component(windows_packages
  "${CMAKE_CURRENT_LIST_DIR}/../build/windows-packages" ABSOLUTE)
set(CMAKE_FIND_ROOT_PATH "${windows_packages}" /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# A package's own file also tells how its static library must be used.
set(CMAKE_FIND_PACKAGE_PREFER_CONFIG ON)

# Programs of the build run under Wine, without a window, in a prefix of the build folder.
set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../scripts/lib/run_under_wine")

# A host needs no runtime library but Windows' own.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static")
set(CMAKE_LINK_SEARCH_START_STATIC ON)
set(CMAKE_LINK_SEARCH_END_STATIC ON)
