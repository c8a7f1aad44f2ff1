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
