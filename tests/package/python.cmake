# Hosts in Python: each test method of python/ is a test, run on the installed package and library.

find_package(Python3 3.9 REQUIRED COMPONENTS Interpreter)

# The library is found as a host's is: by its usual name, on the system's way to libraries.
set(python_environment
  "PYTHONPATH=${staging}/${CMAKE_INSTALL_DATADIR}/signutils/python:${CMAKE_CURRENT_SOURCE_DIR}/python"
  "PYTHONDONTWRITEBYTECODE=1"
  "PYTHONWARNINGS=error"
  "LD_LIBRARY_PATH=${staging}/${CMAKE_INSTALL_LIBDIR}"
  "SIGNUTILS_SOURCES=${PROJECT_SOURCE_DIR}")

# runtime_library(<file> <result>): where the compiler has it.
function(runtime_library file result)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${file}
    OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  set(${result} "${path}" PARENT_SCOPE)
endfunction()

# An instrumented library wants its runtime in the process before all others, and that of C++ with it:
# what watches exceptions looks for the real functions at the start.
if(SIGNUTILS_SANITIZER)
  runtime_library(libstdc++.so.6 runtime_of_cxx)
endif()
if(SIGNUTILS_SANITIZER MATCHES "address")
  runtime_library(libasan.so runtime)
  # What the interpreter itself never gives back is not ours to find.
  list(APPEND python_environment
    "LD_PRELOAD=${runtime}:${runtime_of_cxx}" "ASAN_OPTIONS=detect_leaks=0")
elseif(SIGNUTILS_SANITIZER MATCHES "thread")
  runtime_library(libtsan.so runtime)
  list(APPEND python_environment "LD_PRELOAD=${runtime}:${runtime_of_cxx}")
endif()

function(python_test name)
  add_test(NAME package.python.${name} COMMAND ${ARGN})
  set_tests_properties(package.python.${name} PROPERTIES
    TIMEOUT 300 FIXTURES_REQUIRED signutils_package ENVIRONMENT "${python_environment}")
endfunction()

file(GLOB python_tests CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/python/test_*.py")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${python_tests})
foreach(file IN LISTS python_tests)
  cmake_path(GET file STEM module)
  file(STRINGS "${file}" lines REGEX "^class [A-Z]|^    def test_")
  foreach(line IN LISTS lines)
    if(line MATCHES "^class ([A-Za-z]+)")
      set(class "${CMAKE_MATCH_1}")
    elseif(line MATCHES "def test_([a-z0-9_]+)")
      python_test(${class}.${CMAKE_MATCH_1}
        "${Python3_EXECUTABLE}" -m unittest "${module}.${class}.test_${CMAKE_MATCH_1}")
    endif()
  endforeach()
endforeach()

# Work files are written beside the order file, so the example has a copy.
configure_file("${PROJECT_SOURCE_DIR}/tests/engine/corpus/pain001_v03.xml"
  "${CMAKE_CURRENT_BINARY_DIR}/python/order.xml" COPYONLY)
python_test(ExampleJudgesOneFile
  ${CMAKE_COMMAND} -DPYTHON=${Python3_EXECUTABLE}
  -DEXAMPLE=${PROJECT_SOURCE_DIR}/examples/python_host/judge.py -DBANK=${bank}
  -DORDER=${CMAKE_CURRENT_BINARY_DIR}/python/order.xml
  -P "${CMAKE_CURRENT_SOURCE_DIR}/python_example.cmake")
