#include "algorithm/rowsearch.h"

#include "algorithm/runningsplit.h"

namespace MCBinning {

int RowSearch::FindBest(int first, int last, std::vector<double>& left, std::vector<double>& right,
                        double mostEntropy) const {
  const std::vector<double> totals = right;
  const bool isLimited = mostEntropy < std::numeric_limits<double>::infinity();
  const double limit =
      isLimited ? RunningSplit::ScoreOf(mostEntropy, totals[0]) + RunningSplit::MarginOf(totals[0])
                : std::numeric_limits<double>::infinity();
  const BestSplit found = Find(first, last, totals, left, right, limit);
  if (!found.HasRow() && isLimited) return kNoRow;
  const int best = static_cast<int>(found.GetRow());
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
