#include "algorithm/splitsearch.h"

#include <algorithm>
#include <cstddef>

#include "algorithm/binentropy.h"

namespace MCBinning {

namespace {

const double* RowAt(const std::vector<double>& binTable, int row, std::size_t categoryCount) {
  return binTable.data() + static_cast<std::size_t>(row) * categoryCount;
}

// Whether a cut between two rows can be worth anything: not when both hold weight in one
// and the same category and in no other.
bool IsBoundary(const double* row, const double* next, std::size_t categoryCount) {
  int shared = 0;
  for (std::size_t category = 0; category < categoryCount; ++category) {
    const bool isEmpty = row[category] == 0.0;
    const bool isNextEmpty = next[category] == 0.0;
    if (isEmpty != isNextEmpty) return true;
    if (!isEmpty && ++shared > 1) return true;
  }
  return shared != 1;
}

void MoveRow(const double* row, std::vector<double>& left, std::vector<double>& right) {
  for (std::size_t category = 1; category < left.size(); ++category) {
    const double weight = row[category - 1];
    left[0] += weight;
    left[category] += weight;
    right[0] -= weight;
    right[category] -= weight;
  }
}

void Subtract(const std::vector<double>& totals, const std::vector<double>& part,
              std::vector<double>& difference) {
  for (std::size_t i = 0; i < totals.size(); ++i) difference[i] = totals[i] - part[i];
}

}  // namespace

void SumRows(const std::vector<double>& binTable, int first, int last, std::vector<double>& sum) {
  const std::size_t categoryCount = sum.size() - 1;
  std::fill(sum.begin(), sum.end(), 0.0);
  for (int row = first; row <= last; ++row) {
    const double* const weights = RowAt(binTable, row, categoryCount);
    for (std::size_t category = 0; category < categoryCount; ++category) {
      sum[category + 1] += weights[category];
    }
  }
  for (std::size_t category = 1; category <= categoryCount; ++category) sum[0] += sum[category];
}

int FindBestSplit(const std::vector<double>& binTable, int first, int last,
                  bool rightBorderClosed, std::vector<double>& left, std::vector<double>& right) {
  const std::size_t categoryCount = left.size() - 1;
  const std::vector<double> totals = right;
  int best = 0;
  double bestEntropy = 0.0;
  bool haveBest = false;
  int nextRow = first;
  bool wasBoundary = false;

  for (int row = first; row <= last; ++row) {
    bool isCandidate = wasBoundary;
    if (row < last) {
      wasBoundary = IsBoundary(RowAt(binTable, row, categoryCount),
                               RowAt(binTable, row + 1, categoryCount), categoryCount);
      isCandidate = isCandidate || wasBoundary;
    }
    if (!isCandidate) continue;

    const int lastMoved = rightBorderClosed ? row : row - 1;
    for (; nextRow <= lastMoved; ++nextRow) {
      MoveRow(RowAt(binTable, nextRow, categoryCount), left, right);
    }
    const double entropy = SplitEntropy(left.data(), right.data(), categoryCount);
    if (!haveBest || bestEntropy > entropy) {
      best = row;
      bestEntropy = entropy;
      haveBest = true;
    }
  }

  // Summed anew, from the nearer end.
  const int lastLeft = rightBorderClosed ? best : best - 1;
  if ((first + last) / 2.0 >= best) {
    SumRows(binTable, first, lastLeft, left);
    Subtract(totals, left, right);
  } else {
    SumRows(binTable, lastLeft + 1, last, right);
    Subtract(totals, right, left);
  }
  return best;
}

}  // namespace MCBinning
