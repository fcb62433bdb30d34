#pragma once

#include <vector>

namespace MCBinning {

// The weights of rows first..last of a bin table as a category weight vector. `sum` has one
// entry more than a row.
void SumRows(const std::vector<double>& binTable, int first, int last, std::vector<double>& sum);

// See BINAlgorithm::FindBestCutPoint.
int FindBestSplit(const std::vector<double>& binTable, int first, int last,
                  bool rightBorderClosed, std::vector<double>& left, std::vector<double>& right);

}  // namespace MCBinning
