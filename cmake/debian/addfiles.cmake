# Run by CPack on what it is about to pack: adds what Debian wants in every package, and compresses
# what it wants compressed.

# Debian's form of the change log: one entry, which points to ours.
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(version ${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
string(
  CONCAT
  debianEntry
    "${CPACK_DEBIAN_PACKAGE_SOURCE} (${version}) unstable; urgency=medium\n\n"
    "  * Packaged by CPack; see changelog.gz for what is new.\n\n"
    " -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")

# In that file an empty line of a text is a full stop.
file(READ ${CPACK_PROJECT_SOURCE_DIR}/examples/LICENSE exampleLicense)
string(STRIP "${exampleLicense}" exampleLicense)
string(REPLACE "\n" "\n " exampleLicense "${exampleLicense}")
string(REPLACE "\n \n" "\n .\n" exampleLicense "${exampleLicense}")

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} key)
  set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${component}/usr/share)
  set(documents ${root}/doc/${CPACK_DEBIAN_${key}_PACKAGE_NAME})
  configure_file(${CMAKE_CURRENT_LIST_DIR}/copyright.in ${documents}/copyright @ONLY)
  file(COPY_FILE ${CPACK_PROJECT_SOURCE_DIR}/CHANGELOG.md ${documents}/changelog)
  file(WRITE ${documents}/changelog.Debian "${debianEntry}")
  file(GLOB manuals ${root}/man/man*/*)
  execute_process(COMMAND gzip -9n ${documents}/changelog ${documents}/changelog.Debian ${manuals}
                          COMMAND_ERROR_IS_FATAL ANY)
endforeach()
