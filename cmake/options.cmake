# Two interface targets that every target of ours links: how we compile, and what we warn about.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(CCACHE ccache)
if(CCACHE)
  # What is precompiled can be cached only where nobody minds macros of the time and the like.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros
                                  ${CCACHE})
  set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE})
endif()

add_library(orvane_options INTERFACE)
target_include_directories(orvane_options INTERFACE "${CMAKE_SOURCE_DIR}/src")
# What is precompiled can be used only where threads are treated alike; some libraries ask for them.
# -fpch-preprocess is for the compiler's cache: preprocessed text then names what was precompiled.
target_compile_options(orvane_options INTERFACE -pthread
                       $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fpch-preprocess>)
if(ORVANE_SANITIZE)
  target_compile_options(orvane_options INTERFACE -fsanitize=${ORVANE_SANITIZE}
                         -fno-omit-frame-pointer -fno-sanitize-recover=undefined
                         # Clang 14 cannot assemble coroutines with that check.
                         $<$<CXX_COMPILER_ID:Clang>:-fno-sanitize=function>)
  target_link_options(orvane_options INTERFACE -fsanitize=${ORVANE_SANITIZE})
endif()

add_library(orvane_warnings INTERFACE)
target_compile_options(orvane_warnings INTERFACE -Wall -Wextra -Wpedantic
                       $<$<CXX_COMPILER_ID:GNU>:-Wshadow=local>
                       -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual -Wconversion
                       -Wno-sign-conversion -Werror)
# GCC 12 takes absent optionals for uninitialised once it optimises or sanitizes; debug builds keep
# the warning, and the sanitizers look for the real thing.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(orvane_warnings INTERFACE
                         $<$<CONFIG:RelWithDebInfo,Release>:-Wno-maybe-uninitialized>)
  if(ORVANE_SANITIZE)
    target_compile_options(orvane_warnings INTERFACE -Wno-maybe-uninitialized)
  endif()
endif()

# The two together, for our own targets.
add_library(orvane_common INTERFACE)
target_link_libraries(orvane_common INTERFACE orvane_options orvane_warnings)
