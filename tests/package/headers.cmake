# cmake -D CLANG=... -D HEADERS=... -P headers.cmake
# Compiles each of the installed headers alone as C++17 with clang, with all warnings. (The build
# does so with its own compiler.)
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/../support/requiretools.cmake)

mcbinning_require_tools("clang++" "clang" CLANG)

file(GLOB_RECURSE headers RELATIVE ${HEADERS} ${HEADERS}/mcbinning/*.h)
list(LENGTH headers count)
foreach(header IN LISTS headers)
  execute_process(
    COMMAND
      ${CLANG} -std=c++17 -fsyntax-only -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion
      -Wshadow -Wold-style-cast -Werror -I ${HEADERS} -include ${header} -x
      c++ /dev/null
    RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    list(APPEND refused ${header})
  endif()
endforeach()
if(refused OR count EQUAL 0)
  message(FATAL_ERROR "Of ${count} headers clang refuses: ${refused}")
endif()
