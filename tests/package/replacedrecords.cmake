# cmake -D CXX=... -D CXX_FLAGS=... -D OWN_RECORDS=... -D STAGE=... -D LIBDIR=... -D DIRECTORY=...
#       -P replacedrecords.cmake
# A record library of a host's in the place of libmcrecords.so.0, with nothing else built again: the
# host is linked against it, and again against ours. It prints what it always prints.
cmake_minimum_required(VERSION 3.25)

separate_arguments(flags UNIX_COMMAND "${CXX_FLAGS}")
set(compile ${CXX} ${flags} -std=c++17 -I${STAGE}/include)
set(library ${DIRECTORY}/libmcrecords.so.0)
file(MAKE_DIRECTORY ${DIRECTORY})
execute_process(
  COMMAND ${compile} -fPIC -shared -Wl,-soname,libmcrecords.so.0
          -Wl,--version-script=${OWN_RECORDS}/mcrecords.exports ${OWN_RECORDS}/records.cpp -o ${library}
          COMMAND_ERROR_IS_FATAL ANY)
set(ENV{LD_LIBRARY_PATH} ${DIRECTORY}:${STAGE}/${LIBDIR})
foreach(records ${library} -lmcrecords)
  execute_process(
    COMMAND ${compile} -I${OWN_RECORDS} ${OWN_RECORDS}/../05_own_record_library.cpp
            ${OWN_RECORDS}/columniterator.cpp -o ${DIRECTORY}/host -L${STAGE}/${LIBDIR} -lmcbinning
            ${records} COMMAND_ERROR_IS_FATAL ANY)
  # The loader complains of a library without versions, on standard error.
  execute_process(COMMAND ${DIRECTORY}/host OUTPUT_VARIABLE output ERROR_VARIABLE output
                                            COMMAND_ERROR_IS_FATAL ANY)
  file(READ ${OWN_RECORDS}/../output/05_own_record_library.txt expected)
  if(NOT output STREQUAL expected)
    message(FATAL_ERROR "Linked with ${records} the host prints\n${output}")
  endif()
endforeach()
