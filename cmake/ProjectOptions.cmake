# Flags that every target of the project shares: link to `project_options`.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Build type" FORCE)
endif()
# Lines for backtraces; for stepping through variables, configure with -DCMAKE_BUILD_TYPE=Debug.
set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g1")

option(ZRB_32_BIT "Build for the host's own 32-bit binary interface" OFF)
option(ZRB_SANITIZE "Build with the Address and Undefined Behaviour sanitizers" OFF)
option(ZRB_DIAGNOSE "Build the plugin that raises an exception where a program uses an iterator wrongly" OFF)
option(ZRB_FUZZ "Build the fuzzers (needs clang with libFuzzer)" OFF)
option(ZRB_COVERAGE "Count what is executed: with gcc lines and branches, with clang conditions" OFF)

add_library(project_options INTERFACE)
target_compile_options(project_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Werror)

# Library code that is not ours (GoogleTest) must be built for the same width and sanitizers.
if(ZRB_32_BIT)
  # SSE arithmetic rounds a double once, as the 64-bit build does; the x87 unit would round twice.
  add_compile_options(-m32 -msse2 -mfpmath=sse)
  add_link_options(-m32)
endif()
if(ZRB_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(ZRB_FUZZ)
  # A host calls registered routines by their address, under types of its own, which clang's check
  # of function types cannot know.
  add_compile_options(-fno-sanitize=function)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 19)
  # The C++ library is older than this clang, which warns of it in instantiated templates.
  target_compile_options(project_options INTERFACE -Wno-deprecated-declarations)
endif()

# zrb_count_coverage(): what is compiled in this folder and below counts how often it is executed.
# Tests are not counted themselves, but for those that are made of the plugin's templates.
function(zrb_count_coverage)
  if(NOT ZRB_COVERAGE)
    return()
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(--coverage)
  else()
    add_compile_options(-fprofile-instr-generate -fcoverage-mapping -fcoverage-mcdc)
  endif()
endfunction()

# zrb_count_until_raise(TARGET): counts are written when a program exits; this one writes them too
# when it ends itself by a signal.
function(zrb_count_until_raise target)
  if(ZRB_COVERAGE AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_sources(${target} PRIVATE
      ${PROJECT_SOURCE_DIR}/tools/coverage-report/count_until_raise.cpp)
    target_link_options(${target} PRIVATE -Wl,--wrap=raise)
  endif()
endfunction()

if(ZRB_COVERAGE)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_link_options(--coverage)
  else()
    add_link_options(-fprofile-instr-generate)
  endif()
endif()

# The standard headers that most files of the stand-in host and the tests include; parsing them once
# halves the build.
set(ZRB_COMMON_HEADERS
  <algorithm> <cstdint> <functional> <map> <memory> <optional> <set> <span> <sstream> <string>
  <string_view> <unordered_map> <variant> <vector>)
