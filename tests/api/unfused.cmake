# cmake -D OBJDUMP=... -D LIBRARY=... -P unfused.cmake
# Looks for instructions of 64-bit Arm that multiply and add doubles with one rounding: results
# would differ from those of other machines in the last bit, and cut points with them.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${OBJDUMP} --disassemble --no-show-raw-insn ${LIBRARY}
                OUTPUT_VARIABLE code COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "\t(fn?madd|fn?msub|fml[as])[^\n]*" fused "${code}")
if(NOT code MATCHES "\tret\n")
  message(FATAL_ERROR "No machine code of 64-bit Arm")
endif()
if(fused)
  list(JOIN fused "\n" fused)
  message(FATAL_ERROR "Compiled without -ffp-contract=off:\n${fused}")
endif()
