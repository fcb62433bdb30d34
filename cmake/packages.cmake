# The documents, laid out as in the sources so that their links lead on, and the Debian packages.
function(mcbinning_install_documents)
  install(
    ${ARGN}
    DESTINATION ${CMAKE_INSTALL_DOCDIR}
    COMPONENT documents)
endfunction()
mcbinning_install_documents(FILES README.md CHANGELOG.md CONTRIBUTING.md)
mcbinning_install_documents(DIRECTORY examples)
install(
  DIRECTORY docs
  DESTINATION ${CMAKE_INSTALL_DOCDIR}
  COMPONENT documents
  PATTERN CMakeLists.txt EXCLUDE
  PATTERN reference EXCLUDE)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "mcbinning developers <mcbinning@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # every package has one of its own
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/addfiles.cmake)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_COMPONENTS_ALL library development documents)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SOURCE mcbinning)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/src
                                                 ${PROJECT_BINARY_DIR}/binmodel)
set(debianVersion ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})

set(about "mcbinning cuts numeric variables into bins: so that they tell the\n\
categories of a target apart, by the minimum description length principle,\n\
or so that they have equal weight.\n")

# One macro call a package; a macro, as CPack reads the variables of the whole project.
macro(mcbinning_package component name section summary description)
  string(TOUPPER ${component} key)
  set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${key}_PACKAGE_SECTION ${section})
  set(CPACK_DEBIAN_${key}_DESCRIPTION "${summary}\n${about}.\n${description}")
endmacro()

get_target_property(soversion mcbinning SOVERSION)
set(libraryPackage libmcbinning${soversion})
mcbinning_package(
  library ${libraryPackage} libs "binning of numeric variables - shared library"
  "This package has what programs need to run.")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)

mcbinning_package(
  development libmcbinning-dev libdevel "binning of numeric variables - headers and static library"
  "This package has the headers, a static library, CMake and pkg-config files.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${libraryPackage} (= ${debianVersion})")

mcbinning_package(
  documents mcbinning-doc doc "binning of numeric variables - documents and examples"
  "This package has guides, the methods with their formulas, and examples.")
set(CPACK_DEBIAN_DOCUMENTS_PACKAGE_ARCHITECTURE all)

if(TARGET mcrecords)
  list(APPEND CPACK_COMPONENTS_ALL records)
  get_target_property(soversion mcrecords SOVERSION)
  set(recordsPackage libmcrecords${soversion})
  mcbinning_package(
    records ${recordsPackage} libs "binning of numeric variables - shared library of the record interface"
    "This package has the interface through which programs hand over their records.")
  set(CPACK_DEBIAN_RECORDS_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_LIBRARY_PACKAGE_DEPENDS "${recordsPackage} (>= ${PROJECT_VERSION})")
  string(APPEND CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS ", ${recordsPackage} (= ${debianVersion})")
endif()
if(TARGET mcbinmodel)
  list(APPEND CPACK_COMPONENTS_ALL binmodel binmodel_development)
  get_target_property(soversion mcbinmodel SOVERSION)
  set(binmodelPackage libmcbinmodel${soversion})
  mcbinning_package(
    binmodel ${binmodelPackage} libs "binning of numeric variables - shared library of bins"
    "This package has the library that keeps, applies, measures and exports bins.")
  set(CPACK_DEBIAN_BINMODEL_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_BINMODEL_PACKAGE_DEPENDS "${libraryPackage} (>= ${PROJECT_VERSION})")
  mcbinning_package(
    binmodel_development libmcbinmodel-dev libdevel
    "binning of numeric variables - headers and static library of bins"
    "This package has the headers, a static library, CMake and pkg-config files.")
  set(CPACK_DEBIAN_BINMODEL_DEVELOPMENT_PACKAGE_DEPENDS
      "${binmodelPackage} (= ${debianVersion}), libmcbinning-dev (= ${debianVersion})")
  set(CPACK_DEBIAN_BINMODEL_DEVELOPMENT_PACKAGE_SUGGESTS "libfmt-dev, libutf8proc-dev")
endif()
if(MCBINNING_CLI)
  list(APPEND CPACK_COMPONENTS_ALL tool)
  mcbinning_package(tool mcbin math "binning of numeric variables - command-line tool"
                    "This package has the tool mcbin, which reads CSV files.")
  set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${libraryPackage} (>= ${PROJECT_VERSION})")
endif()
set(CPACK_PROJECT_SOURCE_DIR ${PROJECT_SOURCE_DIR})
include(CPack)
