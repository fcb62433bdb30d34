# cmake -D CXX=... -D CXX_FLAGS=... -D GENERATOR=... -D NM=... -D SOURCE=... -D STAGE=...
#       -D LIBDIR=... -D DIRECTORY=... -P check.cmake
# One process with several of us: a host on the shared library in STAGE, a plug-in on a later one
# with another SONAME and classes of another size, a plug-in that has the static library in it, one
# that has the records in it as well. And a program without any shared library.
cmake_minimum_required(VERSION 3.25)

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# The later version, from changed sources, as a part of the plug-in's build.
set(here ${CMAKE_CURRENT_LIST_DIR})
set(later ${DIRECTORY}/later)
file(REMOVE_RECURSE ${DIRECTORY})
foreach(part CMakeLists.txt cmake src)
  file(COPY ${SOURCE}/${part} DESTINATION ${later})
endforeach()
function(change file from to)
  file(READ ${later}/${file} text)
  string(REPLACE "${from}" "${to}" changed "${text}")
  if(changed STREQUAL text)
    message(FATAL_ERROR "${file} has no `${from}`")
  endif()
  file(WRITE ${later}/${file} "${changed}")
endfunction()
change(src/CMakeLists.txt "mcbinning_link_rules(mcbinning 0)" "mcbinning_link_rules(mcbinning 1)")
foreach(class algorithm/binsettings metadata/binvarlist metadata/bincontvar)
  change(src/${class}.h "\n private:\n" "\n private:\n  double fAddedLater[8] = {};\n")
endforeach()
run(${CMAKE_COMMAND} -G ${GENERATOR} -S ${here}/later -B ${DIRECTORY}/build -DMCBINNING_SOURCE=${later}
    -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_CXX_FLAGS=${CXX_FLAGS})
run(${CMAKE_COMMAND} --build ${DIRECTORY}/build --target later)

separate_arguments(flags UNIX_COMMAND "${CXX_FLAGS}")
set(compile ${CXX} ${flags} -std=c++17)
set(shared -fPIC -shared -fvisibility=hidden -fvisibility-inlines-hidden)
set(fromStage -I${STAGE}/include -L${STAGE}/${LIBDIR} -Wl,-rpath,${STAGE}/${LIBDIR})

# Everything that the host has is visible to its plug-ins.
run(${compile} -rdynamic ${here}/host.cpp -o ${DIRECTORY}/host ${fromStage} -lmcbinning -lmcrecords
    -ldl)
set(archive ${STAGE}/${LIBDIR}/libmcbinning.a)
run(${compile} ${shared} -fno-rtti -fno-exceptions -DMCBINNING_STATIC ${here}/plugin.cpp -o ${DIRECTORY}/static.so ${fromStage}
    ${archive} -lmcrecords)
run(${compile} ${shared} -DMCBINNING_STATIC -DMCRECORDS_STATIC ${here}/plugin.cpp -o
    ${DIRECTORY}/standalone.so ${fromStage} ${archive} ${STAGE}/${LIBDIR}/libmcrecords.a)
run(${DIRECTORY}/host ${DIRECTORY}/build/later.so ${DIRECTORY}/static.so ${DIRECTORY}/standalone.so)

# Names of ours that the plug-ins offer to others.
foreach(plugin static standalone)
  execute_process(COMMAND ${NM} --dynamic --defined-only --demangle ${DIRECTORY}/${plugin}.so
                  OUTPUT_VARIABLE names COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "[^\n]*(BIN|MCCommon|MCMV|MCQuery|MCStatus|Progress)[^\n]*" leaked "${names}")
  if(leaked)
    list(JOIN leaked "\n" leaked)
    message(FATAL_ERROR "The plug-in ${plugin}.so exports\n${leaked}")
  endif()
endforeach()

set(ENV{PKG_CONFIG_PATH} ${STAGE}/${LIBDIR}/pkgconfig)
execute_process(COMMAND pkg-config --static --cflags --libs mcbinning
                OUTPUT_VARIABLE options COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(options UNIX_COMMAND "${options}")
run(${compile} -static ${here}/plugin.cpp ${here}/host.cpp -o ${DIRECTORY}/alone ${options})
run(${DIRECTORY}/alone)
