#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "binmodel/refine/intervaltable.h"
#include "binmodel/refine/refinesettings.h"

namespace MCBinModel {

// Which joined bin may follow which, by their rates.
//
// A trend has one phase or two: a peak rises in the first and falls in the second. The bins that
// begin at a cut are ranked by their rates, so that those a bin can rise to are the ones from some
// rank on, and those it can fall to the ones before some rank.
class TrendSteps {
 public:
  // In which phase the next bin is; nothing where there is no such step.
  struct Phase {
    std::optional<std::size_t> risesTo;
    std::optional<std::size_t> fallsTo;
  };

  // Where bins end that begin at the same cut, by ascending rate.
  struct Bins {
    const std::uint16_t* ends;
    std::size_t count;
  };

  // Keeps no reference to the table, which has rates. O(bins^2 log bins).
  TrendSteps(const IntervalTable& table, RateTrend trend, double minRateDifference);

  std::size_t GetPhaseCount() const { return fPhases.size(); }
  const Phase& GetPhase(std::size_t phase) const { return fPhases[phase]; }
  Bins GetBinsFrom(std::size_t cut) const;

  // The first rank that the bin of this index in the table can rise to, and the number of ranks,
  // from the lowest on, that it can fall to. Requires a bin that is allowed and not the last.
  std::size_t GetFirstRise(std::size_t interval) const { return fFirstRises[interval]; }
  std::size_t GetFallCount(std::size_t interval) const { return fFallCounts[interval]; }

 private:
  void RankBinsFrom(const IntervalTable& table, std::size_t cut, const std::vector<double>& rates);

  std::vector<Phase> fPhases;
  double fLeastStep = 0.0;
  std::vector<std::vector<std::uint16_t>> fEnds;  // by cut
  std::vector<std::uint16_t> fFirstRises;         // by interval
  std::vector<std::uint16_t> fFallCounts;
};

}  // namespace MCBinModel
