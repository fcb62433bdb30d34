#include "common/vectormath.h"

#include <cassert>
#include <cmath>
#include <limits>

namespace MCBinning {

void VectorCopy(const std::vector<double>& from, std::vector<double>& to) { to = from; }

double VectorDiffNorm(const std::vector<double>& a, const std::vector<double>& b) {
  assert(a.size() == b.size());
  double sumOfSquares = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) sumOfSquares += (a[i] - b[i]) * (a[i] - b[i]);
  return std::sqrt(sumOfSquares);
}

double VectorDotProduct(const std::vector<double>& a, const std::vector<double>& b) {
  assert(a.size() == b.size());
  double sum = 0.0;
  for (std::size_t i = 0; i < a.size(); ++i) sum += a[i] * b[i];
  return sum;
}

double VectorMaxX(const std::vector<double>& x) {
  double largest = -std::numeric_limits<double>::infinity();
  for (const double element : x) {
    if (element > largest) largest = element;
  }
  return largest;
}

std::size_t VectorXNonZero(const std::vector<double>& x, std::size_t first) {
  std::size_t count = 0;
  for (std::size_t i = first; i < x.size(); ++i) {
    if (x[i] != 0.0) ++count;
  }
  return count;
}

}  // namespace MCBinning
