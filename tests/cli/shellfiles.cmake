# Usage: cmake -D PROGRAM=... -D DIRECTORY=... -P shellfiles.cmake
# Loads what PROGRAM (mcbin_shellfiles) writes with the shells that are there, and the manual page.
file(MAKE_DIRECTORY ${DIRECTORY})
execute_process(COMMAND ${PROGRAM} ${DIRECTORY} COMMAND_ERROR_IS_FATAL ANY)

function(load shell expected)
  find_program(path_${shell} ${shell})
  if(NOT path_${shell})
    message(STATUS "no ${shell} here, skipped")
    return()
  endif()
  execute_process(
    COMMAND ${path_${shell}} ${ARGN}
    WORKING_DIRECTORY ${DIRECTORY}
    OUTPUT_VARIABLE output
    ERROR_VARIABLE errors
    RESULT_VARIABLE result)
  if(NOT result EQUAL 0
     OR errors
     OR NOT output MATCHES "${expected}")
    message(SEND_ERROR "${shell}: ${result} ${output} ${errors}")
  endif()
endfunction()

# A semicolon would end an argument; nothing but a completion may call compopt.
load(bash "_mcbin mcbin.*--report.*right left.*mcbin.fish" --norc -c
     "source ./mcbin && complete -p mcbin
      compopt() { true
      }
      COMP_WORDS=(mcbin supervised --r) COMP_CWORD=2
      _mcbin && echo \${COMPREPLY[@]}
      COMP_WORDS=(mcbin supervised --closed '') COMP_CWORD=3
      _mcbin && echo \${COMPREPLY[@]}
      COMP_WORDS=(mcbin export --output mcbin.f) COMP_CWORD=3
      _mcbin && echo \${COMPREPLY[@]}")
load(zsh ".*" -n _mcbin)
load(zsh "_mcbin" -fc
     "autoload -Uz compinit && fpath=(\$PWD \$fpath) && compinit -D -u && echo \$_comps[mcbin]")
load(fish ".*" --no-execute mcbin.fish)
load(fish "--woe-adjust" --no-config -c "source mcbin.fish && complete -C 'mcbin report --w'")
load(man "EXIT STATUS" --warnings -E UTF-8 -l mcbin.1)
