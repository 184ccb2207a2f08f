# Hosts in Python: each test method of python/ is a test, run on the installed package and library.

find_package(Python3 3.9 REQUIRED COMPONENTS Interpreter)

# The library is found as a host's is: by its usual name, on the system's way to libraries.
set(python_environment
  "PYTHONPATH=${staging}/${CMAKE_INSTALL_DATADIR}/signutils/python:${CMAKE_CURRENT_SOURCE_DIR}/python"
  "PYTHONDONTWRITEBYTECODE=1"
  "PYTHONWARNINGS=error"
  "LD_LIBRARY_PATH=${staging}/${CMAKE_INSTALL_LIBDIR}"
  "SIGNUTILS_SOURCES=${PROJECT_SOURCE_DIR}")

# An instrumented library wants its runtime in the process before all others.
if(SIGNUTILS_SANITIZER MATCHES "address")
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libasan.so
    OUTPUT_VARIABLE runtime OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  # What the interpreter itself never gives back is not ours to find.
  list(APPEND python_environment "LD_PRELOAD=${runtime}" "ASAN_OPTIONS=detect_leaks=0")
elseif(SIGNUTILS_SANITIZER MATCHES "thread")
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libtsan.so
    OUTPUT_VARIABLE runtime OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  list(APPEND python_environment "LD_PRELOAD=${runtime}")
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
