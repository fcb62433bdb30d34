# What the libraries have in common: their public headers, what they export, how they are installed.

# Where hosts find headers in the build tree, too: a library's folder stands there under the name by
# which they include it, such as <mcbinning/metadata/binvarlist.h>.
set(hostIncludes ${PROJECT_BINARY_DIR}/include)

# Names the public headers in the current folder, which hosts include as <prefix/...>: each must
# compile alone, and all are installed. They include each other by relative paths: a host's own
# common/export.h, say, is never taken for ours.
function(mcbinning_public_headers library prefix)
  file(MAKE_DIRECTORY ${hostIncludes})
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${hostIncludes}/${prefix} SYMBOLIC)
  target_sources(
    ${library}
    PUBLIC FILE_SET HEADERS
           BASE_DIRS ${CMAKE_CURRENT_SOURCE_DIR}
           FILES ${ARGN})
  target_include_directories(
    ${library} PUBLIC $<BUILD_INTERFACE:${hostIncludes}>
                      $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_compile_definitions(
    ${library}
    INTERFACE
      $<BUILD_INTERFACE:MCBINNING_BUILT_WITH_GLIBCXX_DEBUG=${MCBINNING_BUILT_WITH_GLIBCXX_DEBUG}>
      $<BUILD_INTERFACE:MCBINNING_BUILT_WITH_CXX11_ABI=${MCBINNING_BUILT_WITH_CXX11_ABI}>)
  target_compile_features(${library} PUBLIC cxx_std_17)
  set_target_properties(${library} PROPERTIES CXX_EXTENSIONS OFF VERIFY_INTERFACE_HEADER_SETS ON)
endfunction()

# A library exports what its list allows, and one that leaves a symbol open must not link.
# (Sanitizers leave their own open.) The number in its SONAME, and in the version of every exported
# name, moves when compiled hosts would break: see docs/packages.md.
function(mcbinning_link_rules library soversion)
  if(NOT MCBINNING_SANITIZE)
    target_link_options(${library} PRIVATE LINKER:-z,defs)
  endif()
  set(exportedNames ${PROJECT_BINARY_DIR}/${library}.exports)
  string(TOUPPER ${library}_${soversion} versionNode)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/${library}.exports ${exportedNames} @ONLY)
  target_link_options(${library} PRIVATE LINKER:--version-script=${exportedNames})
  set_target_properties(
    ${library}
    PROPERTIES VERSION ${PROJECT_VERSION}
               SOVERSION ${soversion}
               INSTALL_RPATH "$ORIGIN"
               LINK_DEPENDS ${exportedNames}
               LINKER_LANGUAGE CXX)
endfunction()

# A static library. It is compiled apart from the shared one, as its names are hidden: a plug-in that
# links it exports none of them. Its users get the definition, and the headers then say the same.
function(mcbinning_static_library library definition)
  add_library(${library} STATIC ${ARGN})
  target_compile_definitions(${library} PUBLIC ${definition})
  mcbinning_build_rules(${library})
  string(REPLACE "_static" "" outputName ${library})
  set_target_properties(
    ${library} PROPERTIES OUTPUT_NAME ${outputName} VERIFY_INTERFACE_HEADER_SETS OFF)
endfunction()

# Installs the libraries named last: shared ones in `component`, headers and all else that hosts are
# built with in `development`. They are listed in <prefix>Targets.cmake.
set(packageDir ${CMAKE_INSTALL_LIBDIR}/cmake/mcbinning)
function(mcbinning_install prefix component development)
  install(
    TARGETS ${ARGN}
    EXPORT ${prefix}Targets
    LIBRARY COMPONENT ${component} NAMELINK_COMPONENT ${development}
    ARCHIVE COMPONENT ${development}
    FILE_SET HEADERS
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${prefix}
    COMPONENT ${development})
endfunction()

# Installs <prefix>Targets.cmake and <prefix>.pc.
function(mcbinning_install_package_files prefix development)
  install(
    EXPORT ${prefix}Targets
    NAMESPACE mcbinning::
    DESTINATION ${packageDir}
    COMPONENT ${development})
  file(RELATIVE_PATH MCBINNING_PC_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig
       ${CMAKE_INSTALL_PREFIX})
  string(REGEX REPLACE "/$" "" MCBINNING_PC_PREFIX ${MCBINNING_PC_PREFIX})
  configure_file(${PROJECT_SOURCE_DIR}/cmake/${prefix}.pc.in ${PROJECT_BINARY_DIR}/${prefix}.pc
                 @ONLY)
  install(
    FILES ${PROJECT_BINARY_DIR}/${prefix}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT ${development})
endfunction()
