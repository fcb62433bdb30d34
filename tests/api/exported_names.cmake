# cmake -D NM=... -D LIBRARY=... -D EXPECTED=... -D ACTUAL=... -P exported_names.cmake
# Compares the names that the library exports with those of the file EXPECTED.names, the version node
# first; leaves what it found in ACTUAL.names. Every name must belong to that node.
cmake_minimum_required(VERSION 3.25)

execute_process(
  COMMAND ${NM} --dynamic --defined-only --demangle --with-symbol-versions --format=posix ${LIBRARY}
  OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)

# A line is "<name>@@<node> <type letter> <address> <size>"; constructors and destructors come twice.
# The node is a name itself, of type A. Brackets would glue list elements together.
string(REPLACE "[abi:cxx11]" "" symbols "${symbols}")
if(symbols MATCHES "([A-Z]+_[0-9]+) A ")
  set(node ${CMAKE_MATCH_1})
  string(REPLACE "@@${node} " " " symbols "${symbols}")
endif()
string(REGEX REPLACE " [A-Za-z] [0-9a-f]+ [0-9a-f]*\n" ";" names "${symbols}")
list(REMOVE_ITEM names "")
list(REMOVE_DUPLICATES names)
list(REMOVE_ITEM names ${node})
list(SORT names)
list(PREPEND names ${node})
list(JOIN names "\n" text)
file(WRITE ${ACTUAL}.names "${text}\n")

file(STRINGS ${EXPECTED}.names expectedNames)
set(missing ${expectedNames})
list(REMOVE_ITEM missing ${names})
set(unexpected ${names})
list(REMOVE_ITEM unexpected ${expectedNames})
foreach(name IN LISTS missing)
  message("no longer exported: ${name}")
endforeach()
foreach(name IN LISTS unexpected)
  message("exported, but not listed: ${name}")
endforeach()
if(missing OR unexpected)
  message(FATAL_ERROR "If that is meant, copy ${ACTUAL}.names to ${EXPECTED}.names.")
endif()
