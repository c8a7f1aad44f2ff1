# SPDX-License-Identifier: BSD-3-Clause

# What every target of this tree is compiled with.
function(strata_compile_options target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
                                           $<$<BOOL:${STRATA_WARNINGS_AS_ERRORS}>:-Werror>)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF CXX_VISIBILITY_PRESET hidden
                                             VISIBILITY_INLINES_HIDDEN ON)
  if(STRATA_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${STRATA_SANITIZE} -fno-omit-frame-pointer
                                             -fno-sanitize-recover=all)
    target_link_options(${target} PRIVATE -fsanitize=${STRATA_SANITIZE})
  endif()
endfunction()

# strata_add_module(<name> INCLUDE <folder> SOURCES <file>... [PUBLIC <lib>...] [PRIVATE <lib>...])
# A shared library lib<name> with its public headers below INCLUDE and its private ones below src/.
function(strata_add_module name)
  cmake_parse_arguments(arg "" "INCLUDE" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  add_library(${name} SHARED ${arg_SOURCES})
  add_library(Strata::${name} ALIAS ${name})
  strata_compile_options(${name})
  target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${arg_INCLUDE}>
                                            $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_link_libraries(${name} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE})
  set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
endfunction()

# strata_add_test(<name> SOURCES <file>... [LIBS <lib>...] [LABELS <label>...])
# A GoogleTest program whose tests appear one by one in CTest as <prefix><name>.<Suite>.<Test>. The label "threads"
# marks what also runs under the thread sanitizer.
function(strata_add_test name)
  cmake_parse_arguments(arg "" "" "SOURCES;LIBS;LABELS" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  strata_compile_options(${name})
  target_link_libraries(${name} PRIVATE ${arg_LIBS} GTest::gmock GTest::gtest_main)
  gtest_discover_tests(${name} TEST_PREFIX "${STRATA_TEST_PREFIX}${name}." DISCOVERY_MODE PRE_TEST
                       DISCOVERY_TIMEOUT 120 PROPERTIES LABELS "${arg_LABELS}" TIMEOUT 600)
endfunction()
