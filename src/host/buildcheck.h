#pragma once

#include "buildconfig.h"

// Refuses a host whose strings, containers or records are laid out otherwise than the libraries':
// it would link, and then crash or read wrong values.
#if defined(__GLIBCXX__) && defined(_GLIBCXX_DEBUG) && !MCBINNING_BUILT_WITH_GLIBCXX_DEBUG
#error "mcbinning was built without -D_GLIBCXX_DEBUG: build it with, or its host without"
#endif
#if defined(__GLIBCXX__) && !defined(_GLIBCXX_DEBUG) && MCBINNING_BUILT_WITH_GLIBCXX_DEBUG
#error "mcbinning was built with -D_GLIBCXX_DEBUG: build it without, or its host with"
#endif
#if defined(__GLIBCXX__) && _GLIBCXX_USE_CXX11_ABI != MCBINNING_BUILT_WITH_CXX11_ABI
#error "mcbinning was built with another _GLIBCXX_USE_CXX11_ABI than its host"
#endif
#ifdef _LIBCPP_VERSION
#error "mcbinning was built with libstdc++: build its host without -stdlib=libc++"
#endif

namespace MCBinning {

// What -fshort-enums makes of an enumeration.
enum BuildCheckEnum { kBuildCheckValue };
static_assert(sizeof(BuildCheckEnum) == sizeof(int), "mcbinning was built without -fshort-enums");

}  // namespace MCBinning
