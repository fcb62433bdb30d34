#include "binmodel/refine/joinsearch.h"

#include <algorithm>
#include <cassert>
#include <deque>

#include "binmodel/refine/trendsteps.h"

namespace MCBinModel {

namespace {

constexpr std::int64_t kNone = IntervalTable::kNotAllowed;

// How the bins from some place on go on best, and what they are worth.
struct Continuation {
  std::int64_t value = kNone;
  std::uint32_t step = 0;  // where the next bin ends, twice, and the phase that it is in

  Continuation() = default;
  Continuation(std::int64_t itsValue, std::size_t end, std::size_t phase)
      : value(itsValue), step(static_cast<std::uint32_t>(end << 1 | phase)) {}

  std::size_t GetEnd() const { return step >> 1; }
  std::size_t GetPhase() const { return step & 1; }

  // Of equal values the lower cut, then the earlier phase: what may follow a later one may follow
  // an earlier one, too.
  bool IsBetterThan(const Continuation& other) const {
    return value > other.value || (value == other.value && step < other.step);
  }
};

// The same from cut to cut, where any bin may follow any other.
class FreeSearch {
 public:
  explicit FreeSearch(const IntervalTable& table) : fTable(table) {}

  std::optional<Joining> FindAtLeast(std::size_t minBins) {
    Layer& anyNumber = AddFirstLayer();
    ContinueWays(anyNumber, anyNumber);
    while (fLayers.size() <= minBins) AddLayer();
    return Trace(minBins, true);
  }

  std::optional<Joining> FindBetween(std::size_t minBins, std::size_t maxBins) {
    AddFirstLayer();
    while (fLayers.size() <= maxBins) AddLayer();
    std::size_t best = minBins;
    for (std::size_t count = minBins + 1; count <= maxBins; ++count) {
      if (fLayers[count].front().IsBetterThan(fLayers[best].front())) best = count;
    }
    return Trace(best, false);
  }

 private:
  using Layer = std::vector<Continuation>;  // by the cut that the next bin begins at

  // Of no bins: from the end to the end.
  Layer& AddFirstLayer() {
    Layer& layer = fLayers.emplace_back(fTable.GetBinCount() + 1);
    layer.back().value = 0;
    return layer;
  }

  // Of a bin more.
  void AddLayer() {
    const Layer& next = fLayers.back();
    ContinueWays(next, fLayers.emplace_back(fTable.GetBinCount() + 1));
  }

  // The best of a bin and what follows it; `next` may be the layer itself.
  void ContinueWays(const Layer& next, Layer& layer) const {
    for (std::size_t end = fTable.GetBinCount(); end > 0; --end) {
      if (next[end].value == kNone) continue;
      for (std::size_t first = 0; first < end; ++first) {
        const std::int64_t value = fTable.GetValue(fTable.Index(first, end));
        if (value == kNone) continue;
        const Continuation offer(value + next[end].value, end, 0);
        if (offer.IsBetterThan(layer[first])) layer[first] = offer;
      }
    }
  }

  std::optional<Joining> Trace(std::size_t layer, bool staysInFirst) const {
    const Continuation& start = fLayers[layer].front();
    if (start.value == kNone) return std::nullopt;
    Joining joining{{}, start.value};
    for (std::size_t cut = 0; cut < fTable.GetBinCount(); cut = joining.ends.back()) {
      joining.ends.push_back(fLayers[layer][cut].GetEnd());
      if (layer > 0 || !staysInFirst) --layer;
    }
    return joining;
  }

  const IntervalTable& fTable;
  std::deque<Layer> fLayers;  // by the number of bins, or the least number, from there on
};

// The best ways from every place to the last bin, by the number of bins that it takes.
//
// A place is a bin, that is an interval, with the phase of the trend that it is in: all that the
// bins after it depend on. A layer has, for every place, the best way from that bin on that has a
// certain number of bins; each is made from the one before, which has a bin less.
class PlaceSearch {
 public:
  PlaceSearch(const IntervalTable& table, const TrendSteps& steps)
      : fTable(table),
        fSteps(steps),
        fPlaceCount(table.GetIntervalCount() * steps.GetPhaseCount()),
        fValues(fPlaceCount, kNone),
        fNextValues(fPlaceCount, kNone) {}

  // Layers of ways with at least 1, 2, ... bins; the best of those with `minBins`.
  std::optional<Joining> FindAtLeast(std::size_t minBins) {
    AddLayer(Ways::kAnyNumber);
    while (fLayers.size() < minBins) AddLayer(Ways::kOneMore);
    return Trace(fLayers.size() - 1, BestStart(), true);
  }

  // Layers of ways with exactly 1, 2, ... bins; the best of those between the two numbers.
  std::optional<Joining> FindBetween(std::size_t minBins, std::size_t maxBins) {
    Continuation best;
    std::size_t bestLayer = 0;
    for (std::size_t layer = 0; layer < maxBins; ++layer) {
      AddLayer(layer == 0 ? Ways::kOne : Ways::kOneMore);
      const Continuation start = BestStart();
      if (layer + 1 < minBins || !start.IsBetterThan(best)) continue;
      best = start;
      bestLayer = layer;
    }
    return Trace(bestLayer, best, false);
  }

 private:
  enum class Ways { kOne, kAnyNumber, kOneMore };
  using Layer = std::vector<std::uint16_t>;  // of each place, Continuation::step

  static_assert(kMostBinsToJoin < 1U << 15);

  std::size_t PlaceOf(std::size_t phase, std::size_t interval) const {
    return phase * fTable.GetIntervalCount() + interval;
  }

  void AddLayer(Ways ways) {
    fValues.swap(fNextValues);
    std::fill(fValues.begin(), fValues.end(), kNone);
    Layer& layer = fLayers.emplace_back(fPlaceCount);
    // Ways of any number of bins go on within their own layer, which is there from the last bin on.
    const std::vector<std::int64_t>& next = ways == Ways::kAnyNumber ? fValues : fNextValues;
    if (ways != Ways::kOneMore) EndWays();
    if (ways == Ways::kOne) return;
    for (std::size_t cut = fTable.GetBinCount() - 1; cut > 0; --cut) {
      for (std::size_t phase = 0; phase < fSteps.GetPhaseCount(); ++phase) {
        ContinueWays(cut, phase, next, layer);
      }
    }
  }

  // The last bin may be in any phase.
  void EndWays() {
    const std::size_t binCount = fTable.GetBinCount();
    for (std::size_t first = 0; first < binCount; ++first) {
      const std::size_t interval = fTable.Index(first, binCount);
      for (std::size_t phase = 0; phase < fSteps.GetPhaseCount(); ++phase) {
        fValues[PlaceOf(phase, interval)] = fTable.GetValue(interval);
      }
    }
  }

  // The ways on from the bins that end at a cut, in a phase.
  void ContinueWays(std::size_t cut, std::size_t phase, const std::vector<std::int64_t>& next,
                    Layer& layer) {
    const TrendSteps::Phase& steps = fSteps.GetPhase(phase);
    if (steps.risesTo) FindBestRises(cut, *steps.risesTo, next);
    if (steps.fallsTo) FindBestFalls(cut, *steps.fallsTo, next);
    const std::size_t column = fTable.Index(0, cut);
    for (std::size_t first = 0; first < cut; ++first) {
      const std::size_t interval = column + first;
      const std::int64_t value = fTable.GetValue(interval);
      if (value == kNone) continue;
      Continuation best;
      if (steps.risesTo) best = fRises[fSteps.GetFirstRise(interval)];
      if (steps.fallsTo) {
        const Continuation& fall = fFalls[fSteps.GetFallCount(interval)];
        if (fall.IsBetterThan(best)) best = fall;
      }
      if (best.value == kNone) continue;
      const std::size_t place = PlaceOf(phase, interval);
      fValues[place] = value + best.value;
      layer[place] = static_cast<std::uint16_t>(best.step);
    }
  }

  // fRises[i] is the best of the bins at a cut from the i-th on, in the order of their rates.
  void FindBestRises(std::size_t cut, std::size_t phase, const std::vector<std::int64_t>& next) {
    const TrendSteps::Bins bins = fSteps.GetBinsFrom(cut);
    fRises.assign(bins.count + 1, {});
    for (std::size_t rank = bins.count; rank-- > 0;) {
      const Continuation offer = OfferOf(cut, bins.ends[rank], phase, next);
      fRises[rank] = offer.IsBetterThan(fRises[rank + 1]) ? offer : fRises[rank + 1];
    }
  }

  // fFalls[i] is the best of the first i of them.
  void FindBestFalls(std::size_t cut, std::size_t phase, const std::vector<std::int64_t>& next) {
    const TrendSteps::Bins bins = fSteps.GetBinsFrom(cut);
    fFalls.assign(bins.count + 1, {});
    for (std::size_t rank = 0; rank < bins.count; ++rank) {
      const Continuation offer = OfferOf(cut, bins.ends[rank], phase, next);
      fFalls[rank + 1] = offer.IsBetterThan(fFalls[rank]) ? offer : fFalls[rank];
    }
  }

  Continuation OfferOf(std::size_t cut, std::size_t end, std::size_t phase,
                       const std::vector<std::int64_t>& next) const {
    return {next[PlaceOf(phase, fTable.Index(cut, end))], end, phase};
  }

  // The first bin is in the first phase, after which everything is allowed.
  Continuation BestStart() const {
    Continuation best;
    for (std::size_t end = 1; end <= fTable.GetBinCount(); ++end) {
      const Continuation start = OfferOf(0, end, 0, fValues);
      if (start.IsBetterThan(best)) best = start;
    }
    return best;
  }

  // Follows the best way from a first bin through the layers; in the last of them it stays when
  // that holds ways of any number of bins.
  std::optional<Joining> Trace(std::size_t layer, Continuation at, bool staysInLast) const {
    if (at.value == kNone) return std::nullopt;
    Joining joining{{at.GetEnd()}, at.value};
    std::size_t phase = at.GetPhase();
    std::size_t first = 0;
    while (joining.ends.back() < fTable.GetBinCount()) {
      const std::size_t end = joining.ends.back();
      const Layer& steps = fLayers[layer];
      at.step = steps[PlaceOf(phase, fTable.Index(first, end))];
      phase = at.GetPhase();
      first = end;
      joining.ends.push_back(at.GetEnd());
      if (layer > 0 || !staysInLast) --layer;
    }
    return joining;
  }

  const IntervalTable& fTable;
  const TrendSteps& fSteps;
  std::size_t fPlaceCount;
  std::vector<std::int64_t> fValues;      // of each place in the last layer
  std::vector<std::int64_t> fNextValues;  // and in the one before
  std::vector<Layer> fLayers;
  std::vector<Continuation> fRises;
  std::vector<Continuation> fFalls;
};

// With no limit to their number the best bins are often few; only if they are too many are they
// counted.
template <typename MakeSearch>
std::optional<Joining> FindWithin(const JoinLimits& limits, const MakeSearch& makeSearch) {
  std::optional<Joining> best = makeSearch().FindAtLeast(limits.minBins);
  if (!best || best->ends.size() <= limits.maxBins) return best;
  return makeSearch().FindBetween(limits.minBins, limits.maxBins);
}

std::optional<Joining> FindAlong(const IntervalTable& table, const JoinLimits& limits,
                                 RateTrend trend) {
  const TrendSteps steps(table, trend, limits.minRateDifference);
  return FindWithin(limits, [&] { return PlaceSearch(table, steps); });
}

}  // namespace

std::optional<Joining> FindBestJoining(const IntervalTable& table, const JoinLimits& limits) {
  const std::size_t binCount = table.GetBinCount();
  assert(binCount <= kMostBinsToJoin);
  if (limits.minBins > std::min(binCount, limits.maxBins)) return std::nullopt;
  if (!limits.NeedRates()) return FindWithin(limits, [&] { return FreeSearch(table); });
  if (limits.trend != RateTrend::kEither) return FindAlong(table, limits, limits.trend);
  std::optional<Joining> rising = FindAlong(table, limits, RateTrend::kIncreasing);
  std::optional<Joining> falling = FindAlong(table, limits, RateTrend::kDecreasing);
  if (!rising || !falling) return rising ? rising : falling;
  if (rising->value != falling->value) return rising->value > falling->value ? rising : falling;
  return rising->ends <= falling->ends ? rising : falling;
}

}  // namespace MCBinModel
