# Fails unless PROGRAM succeeds and prints the text of EXPECTED; seconds and megabytes may differ.
execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE printed COMMAND_ERROR_IS_FATAL ANY)
file(READ ${EXPECTED} expected)
foreach(text printed expected)
  string(REGEX REPLACE "[0-9.]+(e-[0-9]+)? (s|MB)\n" "# \\2\n" ${text} "${${text}}")
endforeach()
if(NOT printed STREQUAL expected)
  message(FATAL_ERROR "${PROGRAM} printed\n${printed}and not what is in ${EXPECTED}.")
endif()
