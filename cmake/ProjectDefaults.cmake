# Compiler settings that hold for every target of the project.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

add_library(signutils_warnings INTERFACE)
target_compile_options(signutils_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
# GCC 12 takes `"text" + std::string` in optimised code for an overlapping copy; later ones do not.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(signutils_warnings INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict>)
endif()

if(SIGNUTILS_SANITIZER)
  add_compile_options(-fsanitize=${SIGNUTILS_SANITIZER} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${SIGNUTILS_SANITIZER})
endif()

if(SIGNUTILS_FUZZ)
  # The fuzzing engine learns from the product's code, not from the checks of the targets.
  set(SIGNUTILS_FUZZ_CHECKS -fno-sanitize=fuzzer-no-link)
  add_compile_options(-fsanitize=fuzzer-no-link)
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
endif()

# The host and the tests read far more of headers than they hold, so several of their files become one
# to the compiler. The library's rooms never do: what is installed for others is compiled file by file.
# The presets for debugging, sanitizers and analysis take every file alone and so find what a file
# takes from its neighbour.
function(signutils_join_sources target)
  if(SIGNUTILS_JOIN_SOURCES AND NOT SIGNUTILS_COVERAGE)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${SIGNUTILS_JOINED})
    # Joined, a file counts as a header, whose unnamed namespaces would be another in each file.
    target_compile_options(${target} PRIVATE -Wno-subobject-linkage)
  endif()
endfunction()

# Threads count too: without atomic counters some lines come out below nothing.
set(SIGNUTILS_COVERAGE_FLAGS --coverage -fprofile-abs-path -fprofile-update=atomic)
