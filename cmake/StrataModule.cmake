# SPDX-License-Identifier: BSD-3-Clause

# Warnings stop the build with the compilers that the tree is kept free of warnings for; others warn of other things.
set(strata_werror)
if(STRATA_WARNINGS_AS_ERRORS)
  if("${CMAKE_CXX_COMPILER_ID} ${CMAKE_CXX_COMPILER_VERSION}" MATCHES "^(GNU 12|Clang 14)[.]")
    set(strata_werror -Werror)
  else()
    message(STATUS "Warnings do not stop the build with ${CMAKE_CXX_COMPILER_ID} ${CMAKE_CXX_COMPILER_VERSION}")
  endif()
endif()

# What every target of this tree is compiled with.
function(strata_compile_options target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow ${strata_werror})
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # Wrong about "literal" + std::string (GCC bug 105651) and about std::optional (80635) where it optimises.
    target_compile_options(${target} PRIVATE -Wno-restrict -Wno-maybe-uninitialized)
  endif()
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF CXX_VISIBILITY_PRESET hidden
                                             VISIBILITY_INLINES_HIDDEN ON)
  if(STRATA_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${STRATA_SANITIZE} -fno-omit-frame-pointer
                                             -fno-sanitize-recover=all)
    target_link_options(${target} PRIVATE -fsanitize=${STRATA_SANITIZE})
  endif()
endfunction()

# Where STRATA_PRECOMPILE_HEADERS is on: sources read the standard library, which takes most of their time, once for all of
# the target, or of the modules, which are compiled alike.
function(strata_precompile_headers target)
  if(NOT STRATA_PRECOMPILE_HEADERS)
    return()
  endif()
  set(first ferro_objects)
  if(TARGET ${first} AND NOT target STREQUAL first AND target MATCHES "_objects$")
    target_precompile_headers(${target} REUSE_FROM ${first})
  else()
    target_precompile_headers(
      ${target}
      PRIVATE
      <algorithm>
      <array>
      <functional>
      <map>
      <memory>
      <optional>
      <set>
      <span>
      <string>
      <string_view>
      <utility>
      <vector>
      ${ARGN})
  endif()
endfunction()

# strata_add_module(<name> INCLUDE <folder> SOURCES <file>... [PUBLIC <lib>...] [PRIVATE <lib>...])
# A shared library lib<name> with its public headers below INCLUDE and its private ones beside its sources; an include
# names their room from the folder of the sources on. Tests of
# what is not exported link <name>_internals, a static library of the same objects, instead of <name>.
function(strata_add_module name)
  cmake_parse_arguments(arg "" "INCLUDE" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  set(sources ${CMAKE_CURRENT_SOURCE_DIR})
  if(EXISTS ${sources}/src)
    set(sources ${sources}/src)
  endif()
  add_library(${name}_objects OBJECT ${arg_SOURCES})
  strata_compile_options(${name}_objects)
  set_target_properties(${name}_objects PROPERTIES POSITION_INDEPENDENT_CODE ON)
  target_include_directories(${name}_objects PUBLIC ${arg_INCLUDE} PRIVATE ${sources})
  target_link_libraries(${name}_objects PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE})
  strata_precompile_headers(${name}_objects)

  add_library(${name} SHARED $<TARGET_OBJECTS:${name}_objects>)
  add_library(Strata::${name} ALIAS ${name})
  strata_compile_options(${name})
  target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${arg_INCLUDE}>
                                            $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_link_libraries(${name} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE})
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX VERSION ${PROJECT_VERSION}
                                           SOVERSION ${PROJECT_VERSION_MAJOR})

  add_library(${name}_internals STATIC EXCLUDE_FROM_ALL $<TARGET_OBJECTS:${name}_objects>)
  target_compile_features(${name}_internals PUBLIC cxx_std_20)
  target_include_directories(${name}_internals PUBLIC ${arg_INCLUDE} ${sources})
  target_link_libraries(${name}_internals PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE})
  set_target_properties(${name}_internals PROPERTIES LINKER_LANGUAGE CXX)
endfunction()
