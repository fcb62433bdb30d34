# What every target of this project is compiled with; nothing of it reaches the users of a target.
function(mcbinning_build_rules target)
  target_compile_features(${target} PRIVATE cxx_std_20)
  # No fused multiply-add, so that all machines compute the same bits; no path of the build machine
  # in assertion texts.
  target_compile_options(${target} PRIVATE -ffp-contract=off
                                           -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=)
  set_target_properties(
    ${target}
    PROPERTIES CXX_EXTENSIONS OFF
               CXX_VISIBILITY_PRESET hidden
               VISIBILITY_INLINES_HIDDEN ON
               POSITION_INDEPENDENT_CODE ON)
  mcbinning_enable_warnings(${target})
  mcbinning_enable_sanitizers(${target})
endfunction()
