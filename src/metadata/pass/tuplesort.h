#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <vector>

#include "common/prefetch.h"
#include "metadata/pass/cases.h"
#include "metadata/pass/equalparts.h"
#include "metadata/pass/loosecases.h"

namespace MCBinning {

template <typename Case>
class LazyOrder;

// Sorts cases ascending by value: equal values (-0.0 and 0.0 are equal) keep their order,
// NaN values of either sign come last, in their order too.
//
// Many cases are first spread over buckets that each take an equal part of the range of the
// values, so that the rest of the work finds its cases in the processor's caches. Each bucket,
// or a small input as a whole, is then sorted by the order-preserving bits of the values, from
// the least significant digit: the leading bits in which its values lie apart, in a few digits.
// What agrees in those is put in order afterwards, so the time stays O(n) whatever the values.
// Loose cases that are not that many are sorted by equal parts of their range instead, if they lie
// evenly enough: the bits of values around 0 lie apart by their exponents more than by all else.
template <typename Case>
class TupleSorter {
 public:
  // Sorts `cases`, less than 2^32 of them. Needs as much memory again, kept for the next call
  // unless it is much. `useSorted` takes a pointer to sorted cases and their number, again and
  // again: all the cases in order, in parts that no value is in two of, each as long as it is in
  // the nearest cache.
  template <typename UseSorted>
  void Sort(std::vector<Case>& cases, const UseSorted& useSorted) {
    if (std::is_sorted(cases.begin(), cases.end(), IsLess)) {
      useSorted(cases.data(), cases.size());
    } else {
      SortWith(fScratch, cases, useSorted);
      DropIfLarge(fScratch);
    }
  }
  void Sort(std::vector<Case>& cases) {
    Sort(cases, [](const Case*, std::size_t) {});
  }

  // The same for loose cases without a NaN, which are packed into `cases`. Needs memory for the
  // largest bucket besides.
  template <typename UseSorted>
  void Sort(const LooseCases& loose, std::vector<Case>& cases, const UseSorted& useSorted) {
    cases.resize(loose.size());
    const bool isSorted = std::is_sorted(loose.values.begin(), loose.values.end());
    const double* const values = loose.values.data();
    const std::uint8_t* const targets = loose.targets.data();
    const auto caseAt = [values, targets](std::size_t i) { return Case(values[i], targets[i]); };
    const Spread spread(values, isSorted ? 0 : cases.size());
    if (spread.IsUseful()) {
      const Ends ends = SpreadOut(cases.data(), cases.size(), spread, values, caseAt);
      SortBuckets(cases, ends, spread, fScratch, useSorted);
    } else {
      const EqualParts parts = isSorted ? EqualParts() : PartsOfSome(values, cases.size());
      if (parts.IsUseful()) {
        SortByParts(values, caseAt, parts, cases);
      } else {
        for (std::size_t i = 0; i < cases.size(); ++i) cases[i] = caseAt(i);
        if (!isSorted) SortWhole(cases, fScratch);
      }
      useSorted(cases.data(), cases.size());
    }
    DropIfLarge(fScratch);
  }

 private:
  friend class LazyOrder<Case>;

  using Key = std::uint64_t;
  using Ends = std::vector<std::uint32_t>;

  class Spread;

  // Sorts in memory as much again, which stays.
  template <typename UseSorted>
  static void SortWith(std::vector<Case>& scratch, std::vector<Case>& cases,
                       const UseSorted& useSorted) {
    const Spread spread(cases.data(), cases.size());
    if (spread.IsUseful()) {
      const Ends ends = SpreadOut(cases, scratch, spread);
      SortBuckets(cases, ends, spread, scratch, useSorted);
    } else {
      SortWhole(cases, scratch);
      useSorted(cases.data(), cases.size());
    }
  }

  static void SortWhole(std::vector<Case>& cases, std::vector<Case>& scratch) {
    Extend(scratch, cases.size());
    SortRange(cases.data(), scratch.data(), cases.size());
  }

  template <typename UseSorted>
  static void SortBuckets(std::vector<Case>& cases, const Ends& ends, const Spread& spread,
                          std::vector<Case>& scratch, const UseSorted& useSorted) {
    std::size_t first = 0;
    for (const std::size_t end : ends) {
      Case* const bucket = cases.data() + first;
      const std::size_t count = end - first;
      Extend(scratch, count);
      SortBucket(bucket, scratch.data(), count, first > 0 && end < cases.size(), spread);
      useSorted(bucket, count);
      first = end;
    }
  }

  static void Extend(std::vector<Case>& scratch, std::size_t count) {
    if (scratch.size() < count) scratch.resize(count);
  }

  static void DropIfLarge(std::vector<Case>& scratch) {
    if (scratch.capacity() * sizeof(Case) > kLargestKeptBuffer) std::vector<Case>().swap(scratch);
  }

  // Counts of cases. Those of a digit's values must be cleared and added up, which a few cases do
  // not pay for.
  static constexpr std::size_t kFewCases = 32;      // below, inserting is faster
  static constexpr std::size_t kSomeCases = 1024;   // below, a sample takes too long
  static constexpr std::size_t kManyCases = 4096;   // above, larger digits are faster
  static constexpr std::size_t kMostCases = 32768;  // above, buckets are faster
  static constexpr std::size_t kLargestKeptBuffer = std::size_t{32} << 20;  // bytes

  // Ascends with the value; the same for -0.0 and 0.0, and for all NaN.
  static Key KeyOf(double value) {
    const Key bits = std::bit_cast<Key>(value + 0.0);  // makes 0.0 of -0.0
    const Key flip = static_cast<Key>(static_cast<std::int64_t>(bits) >> 63) | (Key{1} << 63);
    return value != value ? ~Key{0} : bits ^ flip;
  }
  static Key KeyOf(const Case& item) {
    if constexpr (kIsPacked<Case>) {
      return item.GetKey();
    } else {
      return KeyOf(item.value);
    }
  }

  static bool IsLess(const Case& a, const Case& b) { return KeyOf(a) < KeyOf(b); }

  // Some of the values, ascending.
  template <std::size_t kSize, typename Source>
  static std::array<double, kSize> SortedSampleOf(const Source* sources, std::size_t count) {
    auto sample = SampleOf<kSize>(sources, count);
    if constexpr (std::is_same_v<Source, double>) {
      std::sort(sample.begin(), sample.end());  // without a NaN
    } else {
      std::sort(sample.begin(), sample.end(),
                [](double a, double b) { return KeyOf(a) < KeyOf(b); });
    }
    return sample;
  }

  // A number of buckets, each for an equal width of the range that most of the values take up.
  class Spread {
   public:
    static constexpr int kPartBits = 16;

    // The range is estimated from a sample: how evenly the buckets are filled decides about
    // the time only.
    template <typename Source>
    Spread(const Source* sources, std::size_t count) {
      if (count <= kMostCases) return;
      constexpr std::size_t kSampleSize = 256;
      constexpr std::size_t kSampleTail = 5;  // of either side, which outliers may take
      const auto sample = SortedSampleOf<kSampleSize>(sources, count);
      const double low = sample[kSampleTail];
      const double high = sample[kSampleSize - 1 - kSampleTail];
      const double margin = (high - low) / 4.0;
      fBucketCount = std::min(std::bit_floor(count / kCasesPerBucket), kMostBuckets);
      fParts = EqualParts(low - margin, high + margin, fBucketCount << kPartBits);
    }

    std::size_t GetBucketCount() const { return fBucketCount; }

    bool IsUseful() const { return fParts.IsUseful(); }

    // Each bucket has 2^kPartBits. A NaN is in the last one.
    const EqualParts& GetParts() const { return fParts; }

   private:
    // With few cases in each, what a bucket takes to be sorted whatever it holds would count.
    static constexpr std::size_t kCasesPerBucket = 128;
    static constexpr std::size_t kMostBuckets = 2048;  // that are filled side by side

    std::size_t fBucketCount = 0;
    EqualParts fParts;
  };

  // Leaves the cases in order of their buckets, and says where each bucket ends.
  static Ends SpreadOut(std::vector<Case>& cases, std::vector<Case>& scratch,
                        const Spread& spread) {
    scratch.reserve(cases.capacity());  // the two change places
    scratch.resize(cases.size());
    const Case* const sources = cases.data();
    const auto caseAt = [sources](std::size_t i) { return sources[i]; };
    Ends ends = SpreadOut(scratch.data(), cases.size(), spread, sources, caseAt);
    cases.swap(scratch);
    return ends;
  }

  // The same for cases that `caseAt` makes, of the values of the sources.
  template <typename Source, typename CaseAt>
  static Ends SpreadOut(Case* cases, std::size_t count, const Spread& spread, const Source* sources,
                        const CaseAt& caseAt) {
    Ends ends(spread.GetBucketCount());
    ForEachPart(sources, count, spread.GetParts(),
                [&](std::size_t /*i*/, std::size_t part) { ++ends[part >> Spread::kPartBits]; });
    AddUp(ends);
    ForEachPart(sources, count, spread.GetParts(), [&](std::size_t i, std::size_t part) {
      std::uint32_t& end = ends[part >> Spread::kPartBits];
      // Written to before long; to wait for the line then would take most of the time.
      FetchAhead<true>(cases + end, kLine);
      cases[end++] = caseAt(i);
    });
    return ends;
  }

  // Finds the parts that the values of the sources are in, some at a time, by vector instructions
  // where there are any.
  template <typename Source, typename Use>
  static void ForEachPart(const Source* sources, std::size_t count, EqualParts parts,
                          const Use& use) {
    constexpr std::size_t kAtATime = 32;
    std::array<std::int32_t, kAtATime> found;
    std::size_t i = 0;
    for (; i + kAtATime <= count; i += kAtATime) {
      for (std::size_t offset = 0; offset < kAtATime * sizeof(Source); offset += kLine)
        FetchAhead(sources + i, kFarAhead + offset);
      for (std::size_t k = 0; k < kAtATime; ++k) found[k] = parts.PartOf(ValueOf(sources[i + k]));
      for (std::size_t k = 0; k < kAtATime; ++k) use(i + k, static_cast<std::size_t>(found[k]));
    }
    for (; i < count; ++i) use(i, static_cast<std::size_t>(parts.PartOf(ValueOf(sources[i]))));
  }

  static constexpr int kPartDigitBits = 10;  // of a part's number, which has two digits

  // Parts of the range of some values. Of no use for fewer or more of them, or where a sample lies
  // so unevenly that too many would share a part.
  static EqualParts PartsOfSome(const double* values, std::size_t count) {
    if (count < kSomeCases || count > kMostCases) return {};
    constexpr std::size_t kSampleSize = 64;
    constexpr std::size_t kSampleTail = 1;
    constexpr std::size_t kClose = 8;            // of the sample
    constexpr double kLeastShare = 1.0 / 256.0;  // of the range, between so many
    const auto sample = SortedSampleOf<kSampleSize>(values, count);
    const double low = sample[kSampleTail];
    const double high = sample[kSampleSize - 1 - kSampleTail];
    for (std::size_t i = kClose; i < kSampleSize; ++i) {
      if (!(sample[i] - sample[i - kClose] > (high - low) * kLeastShare)) return {};
    }
    const double margin = (high - low) / 2.0;
    return {low - margin, high + margin, std::size_t{1} << (2 * kPartDigitBits)};
  }

  // Fills `cases` with what `caseAt` makes of the values, sorted by the parts that they are in,
  // from the least significant digit of a part. In between, a place and the other digit stand for a
  // case, in half its bytes. Then what shares a part is put in order.
  template <typename CaseAt>
  void SortByParts(const double* values, const CaseAt& caseAt, const EqualParts& parts,
                   std::vector<Case>& cases) {
    constexpr std::size_t kDigitValues = std::size_t{1} << kPartDigitBits;
    constexpr int kPlaceBits = 16;
    constexpr std::size_t kPlaces = std::size_t{1} << kPlaceBits;
    static_assert(kMostCases <= kPlaces && kPartDigitBits + kPlaceBits <= 32);
    const std::size_t count = cases.size();
    std::array<std::uint32_t, kDigitValues> low{};
    std::array<std::uint32_t, kDigitValues> high{};
    ForEachPart(values, count, parts, [&](std::size_t /*i*/, std::size_t part) {
      ++low[part % kDigitValues];
      ++high[part / kDigitValues];
    });
    AddUp(low);
    AddUp(high);
    if (fOrder.size() < count) fOrder.resize(count);
    ForEachPart(values, count, parts, [&](std::size_t i, std::size_t part) {
      fOrder[low[part % kDigitValues]++] =
          static_cast<std::uint32_t>(part / kDigitValues * kPlaces + i);
    });
    for (std::size_t i = 0; i < count; ++i)
      cases[high[fOrder[i] / kPlaces]++] = caseAt(fOrder[i] % kPlaces);
    Extend(fScratch, count);
    SortRuns(cases.data(), fScratch.data(), count,
             [&](const Case& item) { return parts.PartOf(ValueOf(item)); });
  }

  // Sorts a bucket in place. One that lies between others that have cases has parts.
  static void SortBucket(Case* cases, Case* scratch, std::size_t count, bool hasParts,
                         const Spread& spread) {
    const bool usesParts = hasParts && count >= kFewCases && count <= kManyCases;
    // Packed cases need no parts, as their keys are at hand.
    if constexpr (!kIsPacked<Case>) {
      if (usesParts) {
        const auto partOf = [&](const Case& item) {
          return static_cast<std::uint32_t>(spread.GetParts().InnerPartOf(item.value));
        };
        SortByDigits<8, 2>(cases, scratch, count, partOf, Spread::kPartBits);
        SortRuns(cases, scratch, count, partOf);
        return;
      }
    }
    SortRange(cases, scratch, count);
  }

  // Turns counts into the positions where each begins.
  template <typename Counts>
  static void AddUp(Counts& counts) {
    std::uint32_t position = 0;
    for (std::uint32_t& count : counts) position += std::exchange(count, position);
  }

  struct Order {
    bool isSorted;
    Key smallest;
    Key largest;
  };

  // One pass without branches.
  static Order LookAt(const Case* cases, std::size_t count) {
    if (count == 0) return {true, 0, 0};
    const Key firstKey = KeyOf(cases[0]);
    Order order{true, firstKey, firstKey};
    Key previous = firstKey;
    for (std::size_t i = 1; i < count; ++i) {
      FetchAhead(cases + i, kFarAhead * 2);
      const Key key = KeyOf(cases[i]);
      order.isSorted = order.isSorted & (previous <= key);
      order.smallest = std::min(order.smallest, key);
      order.largest = std::max(order.largest, key);
      previous = key;
    }
    return order;
  }

  // Sorts in place.
  static void SortRange(Case* cases, Case* scratch, std::size_t count) {
    if (count < kFewCases) {
      InsertionSort(cases, count);
      return;
    }
    const Order order = LookAt(cases, count);
    if (order.isSorted) return;
    if (count <= kManyCases) {
      SortByKeys<8, 2>(cases, scratch, count, order);
    } else {
      SortByKeys<11, 2>(cases, scratch, count, order);
    }
  }

  // By the leading bits of the distance from the smallest key, then by all.
  template <int kDigitBits, int kMostDigits>
  static void SortByKeys(Case* cases, Case* scratch, std::size_t count, const Order& order) {
    const int bits = static_cast<int>(std::bit_width(order.largest - order.smallest));
    const int lowBits = std::max(0, bits - kDigitBits * kMostDigits);
    const auto prefixOf = [&](const Case& item) {
      return (KeyOf(item) - order.smallest) >> lowBits;
    };
    SortByDigits<kDigitBits, kMostDigits>(cases, scratch, count, prefixOf, bits - lowBits);
    if (lowBits > 0) SortRuns(cases, scratch, count, prefixOf);
  }

  // By the number that `prefixOf` gives for a case, of as many bits.
  template <int kDigitBits, int kMostDigits, typename PrefixOf>
  static void SortByDigits(Case* cases, Case* scratch, std::size_t count, const PrefixOf& prefixOf,
                           int prefixBits) {
    constexpr std::size_t kDigitValues = std::size_t{1} << kDigitBits;
    const auto digitOf = [&](const Case& item, int digit) {
      return static_cast<std::size_t>(prefixOf(item) >> (digit * kDigitBits)) & (kDigitValues - 1);
    };

    std::array<std::array<std::uint32_t, kDigitValues>, std::size_t{kMostDigits}> counts{};
    for (std::size_t i = 0; i < count; ++i) {
      for (int digit = 0; digit < kMostDigits; ++digit) {
        ++counts[static_cast<std::size_t>(digit)][digitOf(cases[i], digit)];
      }
    }
    Case* from = cases;
    Case* to = scratch;
    for (int digit = 0; digit * kDigitBits < prefixBits; ++digit) {
      auto& positions = counts[static_cast<std::size_t>(digit)];
      if (positions[digitOf(from[0], digit)] == count) continue;  // all have the same
      AddUp(positions);
      for (std::size_t i = 0; i < count; ++i) to[positions[digitOf(from[i], digit)]++] = from[i];
      std::swap(from, to);
    }
    if (from != cases) std::copy_n(from, count, cases);
  }

  // Sorts each run of cases with the same prefix, where they are not in order yet.
  template <typename PrefixOf>
  static void SortRuns(Case* cases, Case* scratch, std::size_t count, const PrefixOf& prefixOf) {
    for (std::size_t i = 1; i < count; ++i) {
      if (!IsLess(cases[i], cases[i - 1])) continue;
      const auto prefix = prefixOf(cases[i]);
      std::size_t first = i;
      while (first > 0 && prefixOf(cases[first - 1]) == prefix) --first;
      std::size_t last = i + 1;
      while (last < count && prefixOf(cases[last]) == prefix) ++last;
      SortRange(cases + first, scratch + first, last - first);
      i = last;
    }
  }

  static void InsertionSort(Case* cases, std::size_t count) {
    for (std::size_t i = 1; i < count; ++i) {
      const Case inserted = cases[i];
      std::size_t position = i;
      for (; position > 0 && IsLess(inserted, cases[position - 1]); --position) {
        cases[position] = cases[position - 1];
      }
      cases[position] = inserted;
    }
  }

  std::vector<Case> fScratch;
  std::vector<std::uint32_t> fOrder;  // of loose cases, while they are sorted by parts
};

}  // namespace MCBinning
