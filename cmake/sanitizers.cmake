# Compiles and links the target with the sanitizers of MCBINNING_SANITIZE; each finding ends the
# program.
function(mcbinning_enable_sanitizers target)
  if(MCBINNING_SANITIZE)
    target_compile_options(
      ${target} PRIVATE -fsanitize=${MCBINNING_SANITIZE} -fno-sanitize-recover=all
                        -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=${MCBINNING_SANITIZE})
  endif()
endfunction()
