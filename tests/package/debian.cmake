# cmake -D CPACK=... -D BUILD=... -D STAGE=... -D DIRECTORY=... -P debian.cmake
# Packs the build folder BUILD into Debian packages in DIRECTORY and looks for every file of STAGE,
# where everything was installed, in one of them.
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/../support/requiretools.cmake)

find_program(SHLIBDEPS dpkg-shlibdeps)
find_program(FILE file)
mcbinning_require_tools("dpkg-shlibdeps or file" "dpkg-dev, file" SHLIBDEPS FILE)

file(REMOVE_RECURSE ${DIRECTORY})
execute_process(COMMAND ${CPACK} --config ${BUILD}/CPackConfig.cmake -B ${DIRECTORY}
                OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)

file(GLOB packages ${DIRECTORY}/*.deb)
foreach(package IN LISTS packages)
  execute_process(COMMAND dpkg-deb --fsys-tarfile ${package} COMMAND tar -t
                  OUTPUT_VARIABLE names COMMAND_ERROR_IS_FATAL ANY)
  string(REPLACE "\n" ";" names "${names}")
  list(APPEND packed ${names})
endforeach()

file(GLOB_RECURSE installed RELATIVE ${STAGE} ${STAGE}/*)
foreach(name IN LISTS installed)
  string(REGEX REPLACE "(/man[0-9]/.*)" "\\1.gz" name ${name})
  if(NOT ./usr/${name} IN_LIST packed)
    list(APPEND missing ${name})
  endif()
endforeach()
if(missing OR NOT installed)
  list(JOIN missing "\n" missing)
  message(FATAL_ERROR "In none of the packages (a component of the build, but not of "
                      "cmake/packages.cmake?):\n${missing}")
endif()
