#pragma once

#include <cstddef>

// How the libraries were built, where that decides whether a host fits them: the installed copy of
// this header says what the build found, this one takes it from the definitions of the build.
#ifndef MCBINNING_BUILT_WITH_GLIBCXX_DEBUG
#ifdef _GLIBCXX_DEBUG
#define MCBINNING_BUILT_WITH_GLIBCXX_DEBUG 1
#else
#define MCBINNING_BUILT_WITH_GLIBCXX_DEBUG 0
#endif
#endif
#ifndef MCBINNING_BUILT_WITH_CXX11_ABI
#define MCBINNING_BUILT_WITH_CXX11_ABI _GLIBCXX_USE_CXX11_ABI
#endif
