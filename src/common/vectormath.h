#pragma once

#include <cstddef>
#include <vector>

#include "export.h"

namespace MCBinning {

// Makes `to` equal to `from`, reusing the storage of `to` where it suffices. May throw
// std::bad_alloc.
MCBINNING_API void VectorCopy(const std::vector<double>& from, std::vector<double>& to);

// Euclidean norm of a - b, summed from the first element to the last. Requires
// a.size() == b.size().
MCBINNING_API double VectorDiffNorm(const std::vector<double>& a, const std::vector<double>& b);

// Sum of a[i] * b[i], from the first element to the last. Requires a.size() == b.size().
MCBINNING_API double VectorDotProduct(const std::vector<double>& a, const std::vector<double>& b);

// The largest element; minus infinity for an empty vector.
MCBINNING_API double VectorMaxX(const std::vector<double>& x);

// How many elements from index `first` on are not zero; a NaN counts as not zero.
MCBINNING_API std::size_t VectorXNonZero(const std::vector<double>& x, std::size_t first = 0);

}  // namespace MCBinning
