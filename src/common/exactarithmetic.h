#pragma once

// Results are exact to the bit for a stated order of operations, and NaN and infinities are values
// like others. Flags that let the compiler assume otherwise would change results without a word.
#if defined(__FAST_MATH__) || (defined(__FINITE_MATH_ONLY__) && __FINITE_MATH_ONLY__) || \
    defined(__ASSOCIATIVE_MATH__) || defined(__RECIPROCAL_MATH__) || defined(__NO_SIGNED_ZEROS__)
#error "mcbinning must be compiled without -ffast-math, -Ofast and the flags that they stand for"
#endif
