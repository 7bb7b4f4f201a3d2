# Test programs: GoogleTest, found as Debian's library natively and built from Debian's source package for Windows.
if(CMAKE_CROSSCOMPILING OR ZQ_SANITIZE)
  set(INSTALL_GTEST OFF)
  add_subdirectory(/usr/src/googletest "${PROJECT_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
else()
  find_package(GTest REQUIRED)
endif()

set(support "${PROJECT_SOURCE_DIR}/tests/support")
add_library(zq_test_support STATIC "${support}/TestMain.cpp"
  "${support}/${ZQ_SYSTEM}/Program.cpp" "${support}/${ZQ_SYSTEM}/ScarceResources.cpp")
target_include_directories(zq_test_support PUBLIC "${PROJECT_SOURCE_DIR}/tests")
target_link_libraries(zq_test_support PUBLIC zq_tools_platform zq_options GTest::gmock)
if(ZQ_SANITIZE MATCHES "thread")
  target_sources(zq_test_support INTERFACE "${support}/ThreadSanitizer.cpp")
endif()

# Holds the precompiled headers of the test programs: an executable like them.
add_executable(zq_test_headers EXCLUDE_FROM_ALL "${support}/TestMain.cpp")
target_link_libraries(zq_test_headers PRIVATE zq_test_support)
set_target_properties(zq_test_headers PROPERTIES ZQ_FAST_BUILD ON)
target_precompile_headers(zq_test_headers PRIVATE
  <gmock/gmock.h> <gtest/gtest.h> <algorithm> <array> <chrono> <filesystem> <fstream> <functional> <memory> <optional>
  <span> <string> <thread> <vector>)

#
# zq_test_program(<name> SOURCES... [LIBRARIES...]): a test program over the inner classes.
# zq_test(<name> <program> [NETWORK] [SERIAL_LINES] [TIMEOUT <seconds>] [CASES <cases>] [NOT_WITH_TSAN <cases>] [ARGS...]):
# one CTest entry for it; NETWORK runs it in a network namespace of its own, the only place where anything may broadcast.
# SERIAL_LINES says that it plays cameras whose every byte has 500 ms to arrive: little else runs beside it. CASES are
# patterns of GoogleTest's, with colons between them; so are those of NOT_WITH_TSAN, which ThreadSanitizer can't judge, or
# slows down until their time limits end them.
include(CMakeParseArguments)
function(zq_test_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE zq_test_support ${ARG_LIBRARIES})
  target_precompile_headers(${name} REUSE_FROM zq_test_headers)
  set_target_properties(${name} PROPERTIES ZQ_FAST_BUILD ON RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/tests")
endfunction()

function(zq_test name program)
  cmake_parse_arguments(ARG "NETWORK;SERIAL_LINES" "TIMEOUT;CASES;NOT_WITH_TSAN" "ARGS" ${ARGN})
  set(launcher "")
  set(wine_prefix wine)
  if(ARG_NETWORK)
    set(wine_prefix wine_netns)
    set(launcher "${PROJECT_SOURCE_DIR}/scripts/netns")
  endif()
  set(cases "${ARG_CASES}")
  if(ARG_NOT_WITH_TSAN AND ZQ_SANITIZE MATCHES "thread")
    string(APPEND cases "-${ARG_NOT_WITH_TSAN}")
  endif()
  if(cases)
    list(APPEND ARG_ARGS "--gtest_filter=${cases}")
  endif()
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 240)
  endif()
  add_test(NAME "${ZQ_TEST_PREFIX}${name}"
    COMMAND ${launcher} ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:${program}> ${ARG_ARGS})
  set_tests_properties("${ZQ_TEST_PREFIX}${name}" PROPERTIES TIMEOUT ${ARG_TIMEOUT})
  if(CMAKE_CROSSCOMPILING)
    # Of a prefix of Wine's, whose one server serves them all: see scripts/wine-run.
    set_tests_properties("${ZQ_TEST_PREFIX}${name}" PROPERTIES RESOURCE_LOCK ${wine_prefix} PROCESSORS 2)
  endif()
  if(ARG_SERIAL_LINES)
    set_tests_properties("${ZQ_TEST_PREFIX}${name}" PROPERTIES PROCESSORS 4)
  endif()
endfunction()
