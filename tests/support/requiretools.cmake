# mcbinning_require_tools(tools packages variable...): unless each of the variables has a
# value, says that the tools of these Debian packages are missing and ends the script that calls:
# the test counts as skipped, with CI=true as failed.
macro(mcbinning_require_tools tools packages)
  foreach(tool ${ARGN})
    if(NOT ${tool})
      if("$ENV{CI}" STREQUAL "true")
        message(FATAL_ERROR "missing: ${tools} (Debian: ${packages})")
      endif()
      message("skipped: no ${tools} (Debian: ${packages})")
      return()
    endif()
  endforeach()
endmacro()
