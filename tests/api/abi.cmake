# cmake -D ABIDW=... -D ABIDIFF=... -D LIBRARY=... -D HEADERS=... -D EXPECTED=... -D ACTUAL=...
#       -P abi.cmake
# Compares the binary interface of the library with its description EXPECTED.abi; leaves what it
# found in ACTUAL.abi. HEADERS is a folder with the public headers alone.
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/../support/requiretools.cmake)

mcbinning_require_tools("abidw and abidiff" "abigail-tools" ABIDW ABIDIFF)

# What the standard library is made of inside is none of our interface, and most of the text.
file(WRITE ${ACTUAL}.suppressions "[suppress_type]
  name_regexp = ^(__gnu_cxx::|std::(_[A-Z]|allocator|char_traits|initializer_list|pair<std::_|reverse_iterator|basic_ostream))
  drop = yes
")
execute_process(
  COMMAND
    ${ABIDW} --headers-dir ${HEADERS} --drop-private-types --exported-interfaces-only
    --drop-undefined-syms --suppressions ${ACTUAL}.suppressions --type-id-style hash
    --no-comp-dir-path --no-corpus-path --no-elf-needed --no-parameter-names --no-show-locs
    --no-write-default-sizes --out-file ${ACTUAL}.abi ${LIBRARY} COMMAND_ERROR_IS_FATAL ANY)

# The same text from every checkout and build folder.
file(READ ${ACTUAL}.abi description)
string(REGEX REPLACE " path='[^']*/((src|binmodel)/[^']*)'" " path='\\1'" description "${description}")
file(WRITE ${ACTUAL}.abi "${description}")

execute_process(COMMAND ${ABIDIFF} ${EXPECTED}.abi ${ACTUAL}.abi RESULT_VARIABLE difference)
if(NOT difference EQUAL 0)
  message(
    FATAL_ERROR
      "The binary interface is not that of ${EXPECTED}.abi (abidiff ended with ${difference}). "
      "docs/packages.md says what may change when. If this may, copy ${ACTUAL}.abi to "
      "${EXPECTED}.abi and commit it with the change.")
endif()
