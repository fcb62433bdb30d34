# What every target of this project is compiled with; nothing of it reaches the users of a target.
function(mcbinning_build_rules target)
  target_compile_features(${target} PRIVATE cxx_std_20)
  # No fused multiply-add, so that all machines compute the same bits; no path of the build machine
  # in assertion texts. A parent project's flags that would change results or leave out what the
  # sources need are taken back; of -ffast-math the linker must not hear either, since g++ then adds
  # start-up code that rounds small numbers to 0.
  set(exact -fno-fast-math -fno-unsafe-math-optimizations -fno-finite-math-only
            -fno-associative-math -fno-reciprocal-math -fsigned-zeros)
  target_compile_options(
    ${target} PRIVATE -ffp-contract=off -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/= ${exact} -frtti
                      -fexceptions)
  target_link_options(${target} PRIVATE -fno-fast-math -fno-unsafe-math-optimizations)
  set_target_properties(
    ${target}
    PROPERTIES CXX_EXTENSIONS OFF
               CXX_VISIBILITY_PRESET hidden
               VISIBILITY_INLINES_HIDDEN ON
               POSITION_INDEPENDENT_CODE ON)
  mcbinning_enable_warnings(${target})
  mcbinning_enable_sanitizers(${target})
endfunction()
