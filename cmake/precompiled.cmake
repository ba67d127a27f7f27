# The headers that nearly every file includes are compiled once for all: about two thirds of what a
# small file costs. Builds without (wayland-only, x11-only) prove that each file includes what it
# uses all the same.
option(ORVANE_PRECOMPILE "Compile the common headers once" ON)

set(orvane_std_headers
    <algorithm> <array> <chrono> <cmath> <cstddef> <cstdint> <functional> <map> <memory> <optional>
    <set> <string> <string_view> <tuple> <unordered_map> <utility> <variant> <vector>)

# orvane_precompile(NAME HEADERS header … LIBRARIES library …): makes NAME, whose headers others can
# take. LIBRARIES are what decides how those are compiled.
function(orvane_precompile name)
  cmake_parse_arguments(ARG "" "" "HEADERS;LIBRARIES" ${ARGN})
  # The generator wants a target to have a source.
  file(CONFIGURE OUTPUT ${name}.cpp CONTENT "// Nothing but what is precompiled.\n")
  add_library(${name} OBJECT "${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp")
  target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES})
  target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
  # The compiler's cache may give back what was compiled from the same text at another time.
  target_compile_options(${name} PRIVATE
                         $<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>)
endfunction()

# orvane_take_precompiled(NAME DIRECTORY …): all targets of C++ in the directories and below take
# the headers of NAME, save those that have others.
function(orvane_take_precompiled name)
  if(NOT ORVANE_PRECOMPILE)
    return()
  endif()
  foreach(directory ${ARGN})
    get_property(below DIRECTORY "${directory}" PROPERTY SUBDIRECTORIES)
    orvane_take_precompiled(${name} ${below})
    get_property(targets DIRECTORY "${directory}" PROPERTY BUILDSYSTEM_TARGETS)
    foreach(target ${targets})
      orvane_take_precompiled_in(${name} ${target})
    endforeach()
  endforeach()
endfunction()

function(orvane_take_precompiled_in name target)
  if(NOT ORVANE_PRECOMPILE)
    return()
  endif()
  get_target_property(taken ${target} PRECOMPILE_HEADERS_REUSE_FROM)
  get_target_property(own ${target} PRECOMPILE_HEADERS)
  get_target_property(sources ${target} SOURCES)
  get_target_property(kind ${target} TYPE)
  # What is loaded into a program is compiled in another way than what is linked into one.
  if(kind STREQUAL "MODULE_LIBRARY" OR kind STREQUAL "SHARED_LIBRARY")
    return()
  endif()
  if(NOT taken AND NOT own AND sources MATCHES "\\.cpp")
    target_precompile_headers(${target} REUSE_FROM ${name})
  endif()
endfunction()
