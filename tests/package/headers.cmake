# cmake -D CLANG=... -D CXX=... -D CXX_FLAGS=... -D HEADERS=... -P headers.cmake
# Compiles each of the installed headers alone as C++17 with clang, with all warnings (the build does
# so with its own compiler), and all of them with flags that hosts have. Flags that change the layout
# of classes must be refused.
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/../support/requiretools.cmake)

mcbinning_require_tools("clang++" "clang" CLANG)

file(GLOB_RECURSE headers RELATIVE ${HEADERS} ${HEADERS}/mcbin*/*.h)
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

separate_arguments(flags UNIX_COMMAND "${CXX_FLAGS}")
function(compile_all result output)
  execute_process(
    COMMAND ${CXX} ${flags} -std=c++17 -fsyntax-only -Werror ${ARGN} -I ${HEADERS} -include
            mcbinning/mcbinning.h -include mcbinning/internals.h -x c++ /dev/null
    RESULT_VARIABLE status ERROR_VARIABLE text)
  set(${result} ${status} PARENT_SCOPE)
  set(${output} "${text}" PARENT_SCOPE)
endfunction()

compile_all(result output -Wall -Wextra -Weffc++ -Wnon-virtual-dtor)
if(result)
  message(FATAL_ERROR "${output}")
endif()
file(GLOB binmodel ${HEADERS}/mcbinmodel/mcbinmodel.h)
if(binmodel)
  compile_all(result output -Wall -Wextra -Weffc++ -Wnon-virtual-dtor -include ${binmodel})
  if(result)
    message(FATAL_ERROR "${output}")
  endif()
endif()
compile_all(result output -fno-exceptions -fno-rtti -ffast-math -fvisibility=hidden)
if(result)
  message(FATAL_ERROR "${output}")
endif()
foreach(flag -D_GLIBCXX_DEBUG -D_GLIBCXX_USE_CXX11_ABI=0 -fshort-enums)
  compile_all(result output ${flag})
  if(NOT result OR NOT output MATCHES "mcbinning was built with")
    message(FATAL_ERROR "${flag} should be refused:\n${output}")
  endif()
endforeach()

# What makes the arithmetic inexact is refused by the sources.
execute_process(COMMAND ${CXX} ${flags} -fsyntax-only -ffast-math -x c++ ${SOURCES}/common/exactarithmetic.h
                RESULT_VARIABLE status ERROR_VARIABLE text)
if(status EQUAL 0 OR NOT text MATCHES "#error")
  message(FATAL_ERROR "-ffast-math should be refused:\n${text}")
endif()
