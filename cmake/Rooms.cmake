# A room is one folder with one concern; each becomes a static library that the shared library,
# the host and the tests link.

# Counts the runs of each line when the room is on the list of SIGNUTILS_COVERAGE.
function(signutils_count_runs target room)
  if(room IN_LIST SIGNUTILS_COVERAGE)
    target_compile_options(${target} PRIVATE ${SIGNUTILS_COVERAGE_FLAGS} -O0)
    target_link_options(${target} PUBLIC --coverage)
  endif()
endfunction()

# signutils_room(<name> SOURCES <files> [USES <rooms>] [LINKS <libraries>])
function(signutils_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;USES;LINKS" ${ARGN})
  set(target signutils_${name})
  if(NOT ROOM_SOURCES)
    add_library(${target} INTERFACE)
    set(scope INTERFACE)
  else()
    add_library(${target} STATIC ${ROOM_SOURCES})
    set(scope PUBLIC)
    target_link_libraries(${target} PRIVATE signutils_warnings signutils_hardening)
    if(WIN32)
      target_compile_definitions(${target} PUBLIC SIGNUTILS_STATIC)
    endif()
    signutils_count_runs(${target} ${name})
  endif()
  target_include_directories(${target} ${scope} "${PROJECT_SOURCE_DIR}")
  list(TRANSFORM ROOM_USES PREPEND signutils_)
  target_link_libraries(${target} ${scope} ${ROOM_USES} ${ROOM_LINKS})
endfunction()

# Registers each test of a program under its own name, in a process of its own.
function(signutils_register_each target room)
  gtest_discover_tests(${target}
    TEST_PREFIX "${room}."
    NO_PRETTY_VALUES # names are the same on every platform
    DISCOVERY_MODE PRE_TEST
    DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT 300)
endfunction()

# Registers a test program as so many processes with a share of its tests each: under Wine the start of
# a process for each would take longer than the tests. What ran stands in test-results/<room>.<share>.xml
# below the build folder.
function(signutils_register_shares target room count)
  set(results "${PROJECT_BINARY_DIR}/test-results")
  file(MAKE_DIRECTORY "${results}")
  math(EXPR last "${count} - 1")
  foreach(index RANGE ${last})
    set(name ${room}.${index})
    add_test(NAME ${name} COMMAND ${target} --gtest_brief=1 "--gtest_output=xml:${name}.xml"
      WORKING_DIRECTORY "${results}")
    set_tests_properties(${name} PROPERTIES
      TIMEOUT 1200
      COST ${count} # the longest programs begin first
      ENVIRONMENT "GTEST_TOTAL_SHARDS=${count};GTEST_SHARD_INDEX=${index}"
      FIXTURES_REQUIRED engine_registered) # COM finds the engine by the registry
  endforeach()
endfunction()

# signutils_tests(<room> SOURCES <files> [LINKS <libraries>] [OPTIMISED] [FILE_BY_FILE] [SHARES <count>])
# One test program a room. FILE_BY_FILE: its files are never joined, because others take its objects by
# their names. SHARES: in how many processes the tests run where they do not run in one each.
function(signutils_tests room)
  cmake_parse_arguments(TESTS "OPTIMISED;FILE_BY_FILE" "SHARES" "SOURCES;LINKS" ${ARGN})
  foreach(source IN LISTS TESTS_SOURCES)
    cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" NORMALIZE)
    set_property(GLOBAL APPEND PROPERTY SIGNUTILS_LISTED_TESTS "${source}")
  endforeach()
  set(target signutils_tests_${room})
  add_executable(${target} ${TESTS_SOURCES})
  target_link_libraries(${target} PRIVATE
    signutils_warnings signutils_testing ${TESTS_LINKS} GTest::gmock GTest::gtest)
  # What is tested is optimised; the tests themselves need not be, and are built in half the time. A
  # program whose runs are counted has other flags than the precompiled headers.
  if(NOT TESTS_OPTIMISED AND NOT room IN_LIST SIGNUTILS_COVERAGE)
    target_compile_options(${target} PRIVATE -O0)
    target_precompile_headers(${target} REUSE_FROM signutils_testing)
  endif()
  if(NOT TESTS_FILE_BY_FILE)
    signutils_join_sources(${target})
  endif()
  signutils_count_runs(${target} ${room})
  if(NOT WIN32)
    signutils_register_each(${target} ${room})
    return()
  endif()
  if(NOT TESTS_SHARES)
    set(TESTS_SHARES 1)
  endif()
  signutils_register_shares(${target} ${room} ${TESTS_SHARES})
endfunction()

# Fails the configuration when a test file below `folder` is built by no test program.
function(signutils_refuse_unlisted_tests folder)
  file(GLOB_RECURSE present CONFIGURE_DEPENDS "${folder}/*_test.cpp")
  get_property(listed GLOBAL PROPERTY SIGNUTILS_LISTED_TESTS)
  list(REMOVE_ITEM present ${listed})
  if(present)
    list(JOIN present "\n  " present)
    message(FATAL_ERROR
      "These test files are built by no test program; list each in the CMakeLists.txt "
      "of its folder:\n  ${present}")
  endif()
endfunction()
