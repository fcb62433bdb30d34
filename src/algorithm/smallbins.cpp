#include "algorithm/smallbins.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "algorithm/binentropy.h"

namespace MCBinning {

namespace {

// Joins a bin with the one above it; the cut between them goes.
struct Merge {
  std::size_t lowerBin;
  bool intoLower;
};

// Bins one after the other, each a category weight vector of `size` entries.
class Bins {
 public:
  Bins(std::vector<double>& counts, std::size_t size) : fCounts(counts), fSize(size) {}

  double* At(std::size_t bin) { return fCounts.data() + bin * fSize; }
  double GetWeight(std::size_t bin) { return At(bin)[0]; }

  // The class entropy that is left when two bins are merged and a third stays alone.
  double ScoreMerge(std::size_t bin, std::size_t neighbour, std::size_t other) {
    std::vector<double> merged(At(neighbour), At(neighbour) + fSize);
    for (std::size_t i = 0; i < fSize; ++i) merged[i] += At(bin)[i];
    return SplitEntropy(merged.data(), At(other), fSize - 1);
  }

  void Apply(const Merge& merge) {
    const std::size_t kept = merge.intoLower ? merge.lowerBin : merge.lowerBin + 1;
    const std::size_t removed = merge.intoLower ? merge.lowerBin + 1 : merge.lowerBin;
    for (std::size_t i = 0; i < fSize; ++i) At(kept)[i] += At(removed)[i];
    const auto first = fCounts.begin() + static_cast<std::ptrdiff_t>(removed * fSize);
    fCounts.erase(first, first + static_cast<std::ptrdiff_t>(fSize));
  }

 private:
  std::vector<double>& fCounts;
  std::size_t fSize;
};

}  // namespace

void MergeSmallBins(double threshold, std::size_t categoryCount, std::vector<double>& counts,
                    std::set<double>& cuts) {
  Bins bins(counts, categoryCount + 1);

  // Found on the bins as they are, before any merge.
  std::vector<Merge> merges;
  for (std::size_t bin = 1; bin < cuts.size(); ++bin) {
    const double lighterNeighbour = std::min(bins.GetWeight(bin - 1), bins.GetWeight(bin + 1));
    if (!(threshold * lighterNeighbour > bins.GetWeight(bin))) {
      continue;
    }
    const double lowerScore = bins.ScoreMerge(bin, bin - 1, bin + 1);
    const double upperScore = bins.ScoreMerge(bin, bin + 1, bin - 1);
    if (upperScore >= lowerScore) {
      merges.push_back({bin - 1, true});
    } else {
      merges.push_back({bin, false});
    }
  }

  // Each merge has moved the bins above it down by one.
  for (std::size_t done = 0; done < merges.size(); ++done) {
    const std::size_t lowerBin = merges[done].lowerBin - done;
    bins.Apply({lowerBin, merges[done].intoLower});
    cuts.erase(std::next(cuts.begin(), static_cast<std::ptrdiff_t>(lowerBin)));
  }
}

}  // namespace MCBinning
