# SPDX-License-Identifier: BSD-3-Clause
# Programs of the suite: tests, fuzz targets with their seeds, benchmarks.

# Test code is optimised less than what it tests, because it then compiles faster.
function(strata_test_options target)
  strata_compile_options(${target})
  target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-O1>)
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # Wrong about strings compared and joined in expectations; the address sanitizer finds the true ones.
    target_compile_options(${target} PRIVATE -Wno-array-bounds -Wno-stringop-overflow)
  endif()
endfunction()

# Compiled once, then reused by every test program: GoogleTest and the standard headers cost far more than most tests.
function(strata_add_test_pch)
  file(WRITE ${PROJECT_BINARY_DIR}/TestPrecompiled.cpp "")
  add_library(strata_test_pch OBJECT ${PROJECT_BINARY_DIR}/TestPrecompiled.cpp)
  strata_test_options(strata_test_pch)
  # GoogleTest alone: linking a module here would leave its include path in the programs that do not use it.
  target_link_libraries(strata_test_pch PRIVATE GTest::gmock GTest::gtest)
  target_precompile_headers(
    strata_test_pch PRIVATE <gmock/gmock.h> <gtest/gtest.h>
    <algorithm> <array> <atomic> <bit> <chrono> <cstdint> <cstring> <filesystem> <fstream> <functional> <iterator>
    <list> <map> <memory> <mutex> <optional> <set> <span> <sstream> <string> <string_view> <thread> <utility> <vector>)
endfunction()

# strata_add_test_library(<name> SOURCES <file>... [LIBS <lib>...] [HEADERS <module>...])
# What several programs share, compiled once, and only where one of them is built. Modules under HEADERS give their
# headers alone: the program chooses between their shared and their static form, and names them behind this library.
function(strata_add_test_library name)
  cmake_parse_arguments(arg "" "" "SOURCES;LIBS;HEADERS" ${ARGN})
  add_library(${name} STATIC EXCLUDE_FROM_ALL ${arg_SOURCES})
  strata_test_options(${name})
  target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${arg_LIBS})
  foreach(module IN LISTS arg_HEADERS)
    target_include_directories(${name} PRIVATE $<TARGET_PROPERTY:${module},INTERFACE_INCLUDE_DIRECTORIES>)
  endforeach()
endfunction()

# strata_add_test(<name> SOURCES <file>... [LIBS <lib>...] [LABELS <label>...])
# A GoogleTest program whose tests appear one by one in CTest as <prefix><name>.<Suite>.<Test>. The label "threads"
# marks what also runs under the thread sanitizer. With STRATA_TEST_LABEL set, a program without that label is neither
# built by default nor registered.
function(strata_add_test name)
  cmake_parse_arguments(arg "" "" "SOURCES;LIBS;LABELS" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  strata_test_options(${name})
  target_link_libraries(${name} PRIVATE ${arg_LIBS} GTest::gmock GTest::gtest_main)
  target_precompile_headers(${name} REUSE_FROM strata_test_pch)
  if(STRATA_TEST_LABEL AND NOT STRATA_TEST_LABEL IN_LIST arg_LABELS)
    set_target_properties(${name} PROPERTIES EXCLUDE_FROM_ALL ON)
    return()
  endif()
  set(labels)
  if(arg_LABELS)
    set(labels LABELS "${arg_LABELS}")
  endif()
  gtest_discover_tests(${name} TEST_PREFIX "${STRATA_TEST_PREFIX}${name}." DISCOVERY_MODE PRE_TEST
                       DISCOVERY_TIMEOUT 120 PROPERTIES TIMEOUT 600 ${labels})
endfunction()

# strata_add_fuzz(<Name> SOURCES <file>... [LIBS <lib>...] [CORPUS <file>...])
# A libFuzzer program and, in CTest, a short run of it as fuzz.<Name>, which starts from the seeds and from what earlier
# runs of this build folder found. CORPUS is the source of a program that the build calls with one argument, the folder
# into which it writes the seeds. Of several targets that name the same one, it has the libraries of the first.
function(strata_add_fuzz name)
  cmake_parse_arguments(arg "" "" "SOURCES;LIBS;CORPUS" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  strata_compile_options(${name})
  target_link_libraries(${name} PRIVATE ${arg_LIBS})
  target_link_options(${name} PRIVATE -fsanitize=fuzzer)

  set(seeds ${CMAKE_CURRENT_BINARY_DIR}/seeds/${name})
  file(MAKE_DIRECTORY ${seeds})
  if(arg_CORPUS)
    list(GET arg_CORPUS 0 corpus)
    cmake_path(GET corpus STEM corpus)
    if(NOT TARGET ${corpus})
      add_executable(${corpus} ${arg_CORPUS})
      strata_compile_options(${corpus})
      target_link_libraries(${corpus} PRIVATE ${arg_LIBS})
    endif()
    add_custom_command(
      OUTPUT ${seeds}.stamp
      COMMAND ${CMAKE_COMMAND} -E rm -rf ${seeds}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${seeds}
      COMMAND ${corpus} ${seeds}
      COMMAND ${CMAKE_COMMAND} -E touch ${seeds}.stamp
      DEPENDS ${corpus}
      COMMENT "Making the seeds of ${name}" VERBATIM)
    add_custom_target(${name}Seeds ALL DEPENDS ${seeds}.stamp)
  endif()

  # New inputs go to the first folder given, so that the seeds stay as they were made.
  set(found ${CMAKE_CURRENT_BINARY_DIR}/found/${name})
  file(MAKE_DIRECTORY ${found}/corpus)
  add_test(NAME ${STRATA_TEST_PREFIX}fuzz.${name}
           COMMAND ${name} -seed=1 -runs=${STRATA_FUZZ_RUNS} -max_total_time=${STRATA_FUZZ_SECONDS} -timeout=10
                   -rss_limit_mb=1024 -malloc_limit_mb=512 -print_final_stats=1 -artifact_prefix=${found}/
                   ${found}/corpus ${seeds})
  set_tests_properties(${STRATA_TEST_PREFIX}fuzz.${name} PROPERTIES LABELS fuzz TIMEOUT 600)
endfunction()

# strata_add_bench(<name> SOURCES <file>... [LIBS <lib>...])
# A Google Benchmark program; run by hand, never part of the suite.
function(strata_add_bench name)
  cmake_parse_arguments(arg "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  strata_compile_options(${name})
  target_link_libraries(${name} PRIVATE ${arg_LIBS} benchmark::benchmark benchmark::benchmark_main)
endfunction()
