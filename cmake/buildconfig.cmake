# Finds out what the compiler flags make of the standard library, for the header that tells hosts how
# the libraries were built; those of a parent project's directory as well.
include(CheckCXXSourceCompiles)

function(mcbinning_check_flags variable condition)
  get_directory_property(CMAKE_REQUIRED_FLAGS COMPILE_OPTIONS)
  get_directory_property(definitions COMPILE_DEFINITIONS)
  foreach(definition IN LISTS definitions)
    list(APPEND CMAKE_REQUIRED_FLAGS -D${definition})
  endforeach()
  list(FILTER CMAKE_REQUIRED_FLAGS EXCLUDE REGEX "[$]<|^-Werror")
  list(JOIN CMAKE_REQUIRED_FLAGS " " CMAKE_REQUIRED_FLAGS)
  set(CMAKE_TRY_COMPILE_CONFIGURATION ${CMAKE_BUILD_TYPE})
  set(CMAKE_REQUIRED_QUIET ON)
  # Flags can change between two runs of CMake.
  unset(${variable} CACHE)
  check_cxx_source_compiles(
    "#include <cstddef>\n#if !(${condition})\n#error no\n#endif\nint main() {}" ${variable})
  if(${variable})
    set(${variable} 1 PARENT_SCOPE)
  else()
    set(${variable} 0 PARENT_SCOPE)
  endif()
endfunction()

mcbinning_check_flags(MCBINNING_BUILT_WITH_GLIBCXX_DEBUG "defined(_GLIBCXX_DEBUG)")
mcbinning_check_flags(MCBINNING_BUILT_WITH_CXX11_ABI "_GLIBCXX_USE_CXX11_ABI")

file(
  CONFIGURE
  OUTPUT ${PROJECT_BINARY_DIR}/buildconfig.h
  CONTENT
    "#pragma once

// How the libraries were built, where that decides whether a host fits them.
#define MCBINNING_BUILT_WITH_GLIBCXX_DEBUG @MCBINNING_BUILT_WITH_GLIBCXX_DEBUG@
#define MCBINNING_BUILT_WITH_CXX11_ABI @MCBINNING_BUILT_WITH_CXX11_ABI@
#define MCBINNING_BUILT_BY \"@CMAKE_CXX_COMPILER_ID@ @CMAKE_CXX_COMPILER_VERSION@\"
#define MCBINNING_BUILT_AS \"@CMAKE_BUILD_TYPE@\"
"
  @ONLY)
