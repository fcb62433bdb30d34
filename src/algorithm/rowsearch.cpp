#include "algorithm/rowsearch.h"

namespace MCBinning {

int RowSearch::FindBest(int first, int last, std::vector<double>& left,
                        std::vector<double>& right) const {
  const std::vector<double> totals = right;
  const int best = FindRow(first, last, totals, left, right);
  // Both sides are summed once more, from the nearer end, so that nothing of the search's rounding
  // is left.
  const int lastLeft = fRightBorderClosed ? best : best - 1;
  if ((first + last) / 2.0 >= best) {
    SumRows(first, lastLeft, left);
    Subtract(totals, left, right);
  } else {
    SumRows(lastLeft + 1, last, right);
    Subtract(totals, right, left);
  }
  return best;
}

}  // namespace MCBinning
