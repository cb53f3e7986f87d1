# Helpers to make the project's targets. A folder may still be empty: its library is then an
# INTERFACE target that carries only its dependencies, and its executable is left out.

macro(tessel_global_settings)
  set(CMAKE_CXX_STANDARD 20)
  set(CMAKE_CXX_STANDARD_REQUIRED ON)
  set(CMAKE_CXX_EXTENSIONS OFF)
  set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
  if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Debug)
  endif()
  tessel_use_ccache()
  tessel_use_sanitizers()
endmacro()

# The sloppiness lets ccache work with precompiled headers; the base directory lets several build
# folders of one checkout share the cache.
macro(tessel_use_ccache)
  find_program(TESSEL_CCACHE ccache)
  if(TESSEL_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
        CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${TESSEL_CCACHE})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      add_compile_options(-fpch-preprocess)
    endif()
  endif()
endmacro()

macro(tessel_use_sanitizers)
  if(TESSEL_SANITIZE)
    add_compile_options(-fsanitize=${TESSEL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${TESSEL_SANITIZE})
  endif()
endmacro()

function(tessel_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic)
  # GCC 12 takes optimised moves of std::string for overruns (GCC bugs 105329 and 105651).
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE
      $<$<NOT:$<CONFIG:Debug>>:-Wno-array-bounds -Wno-stringop-overread -Wno-restrict>)
  endif()
  if(TESSEL_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()

# tessel_library(<name> <glob>...): a static library of the sources that match.
function(tessel_library name)
  file(GLOB sources CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR} ${ARGN})
  tessel_library_of(${name} ${sources})
endfunction()

# As tessel_library, but the patterns match in sub-folders too.
function(tessel_library_recursive name)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR} ${ARGN})
  tessel_library_of(${name} ${sources})
endfunction()

# A static library of the files named; an INTERFACE library if no .cpp file is among them.
function(tessel_library_of name)
  set(units ${ARGN})
  list(FILTER units INCLUDE REGEX "\\.cpp$")
  if(units)
    add_library(${name} STATIC ${ARGN})
    tessel_warnings(${name})
  else()
    message(STATUS "${name}: no sources yet")
    add_library(${name} INTERFACE)
  endif()
endfunction()

# Sets <result> to the keyword with which properties of the library are passed on to its users.
function(tessel_scope target result)
  get_target_property(kind ${target} TYPE)
  if(kind STREQUAL "INTERFACE_LIBRARY")
    set(${result} INTERFACE PARENT_SCOPE)
  else()
    set(${result} PUBLIC PARENT_SCOPE)
  endif()
endfunction()

function(tessel_link target)
  tessel_scope(${target} scope)
  target_link_libraries(${target} ${scope} ${ARGN})
endfunction()

# Puts a folder first on the include path in which the headers of ODBC, SQLite and the database
# client libraries stand as headers that refuse to compile.
function(tessel_forbid_platform_headers target)
  tessel_scope(${target} scope)
  if(scope STREQUAL "PUBLIC")
    target_include_directories(${target} BEFORE PRIVATE ${CMAKE_SOURCE_DIR}/cmake/forbidden)
  endif()
endfunction()

# tessel_wing(<name> <library>...): the library logic_<name> of the wing logic/<name>, which uses the
# libraries. The header of a wing that none of them is or uses does not compile in it.
function(tessel_wing name)
  tessel_library_recursive(logic_${name} logic/${name}/*.cpp)
  tessel_link(logic_${name} ${ARGN})
  tessel_forbid_platform_headers(logic_${name})
  tessel_forbid_other_wings(${name} ${ARGN})
  tessel_precompile_std(logic_${name})
endfunction()

# Puts a folder first on the wing's include path that holds, for each header of the wings that it
# does not use, one of the same name that refuses to compile.
function(tessel_forbid_other_wings name)
  set(mine ${name})
  foreach(library ${ARGN})
    if(library MATCHES "^logic_(.*)")
      get_property(used GLOBAL PROPERTY TESSEL_USED_BY_${CMAKE_MATCH_1})
      list(APPEND mine ${used})
    endif()
  endforeach()
  set_property(GLOBAL PROPERTY TESSEL_USED_BY_${name} ${mine})
  set(guard ${CMAKE_BINARY_DIR}/forbidden/${name})
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR} logic/*.h)
  foreach(header ${headers})
    string(REGEX REPLACE "^logic/([^/]*)/.*" "\\1" wing ${header})
    if(NOT wing IN_LIST mine)
      file(CONFIGURE OUTPUT ${guard}/${header} CONTENT "#error \"logic/${name} may not use ${header}\"\n")
    endif()
  endforeach()
  target_include_directories(logic_${name} BEFORE PRIVATE ${guard})
endfunction()

# tessel_precompile(<target> <header>...)
function(tessel_precompile target)
  tessel_scope(${target} scope)
  if(TESSEL_PCH AND scope STREQUAL "PUBLIC")
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()

set(TESSEL_STD_HEADERS
    <algorithm> <array> <chrono> <cstdint> <functional> <map> <memory> <optional> <set> <span>
    <sstream> <stdexcept> <string> <string_view> <unordered_map> <utility> <variant> <vector>)

function(tessel_precompile_std target)
  tessel_precompile(${target} ${TESSEL_STD_HEADERS} ${ARGN})
endfunction()

# tessel_executable(<name> [EXCEPT <regex>] <glob>...): an executable of the sources that match,
# sub-folders included; nothing if there are none. Check with if(TARGET <name>).
function(tessel_executable name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" EXCEPT "")
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR} ${arg_UNPARSED_ARGUMENTS})
  if(arg_EXCEPT)
    list(FILTER sources EXCLUDE REGEX "${arg_EXCEPT}")
  endif()
  list(FILTER sources EXCLUDE REGEX "^tests/data/servers/") # a library of its own
  if(sources)
    add_executable(${name} ${sources})
    tessel_warnings(${name})
  else()
    message(STATUS "${name}: no sources yet")
  endif()
endfunction()
