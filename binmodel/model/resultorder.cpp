#include "binmodel/model/resultorder.h"

#include <algorithm>
#include <numeric>

namespace MCBinModel {

std::vector<std::size_t> OrderByGain(const std::vector<AttributeBins>& results) {
  std::vector<std::size_t> order(results.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return results[a].informationGain > results[b].informationGain;
  });
  return order;
}

}  // namespace MCBinModel
