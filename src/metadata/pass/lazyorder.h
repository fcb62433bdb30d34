#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "common/prefetch.h"
#include "metadata/pass/cases.h"
#include "metadata/pass/equalparts.h"
#include "metadata/pass/tuplesort.h"

namespace MCBinning {

// Cases in the order of TupleSorter, as far as somebody looks: many are spread over the sorter's
// buckets alone, which ascend, and a bucket is sorted when it is looked into. A few percentiles lie
// in a few buckets; to count the distinct values of another one takes a table, not a sort.
template <typename Case>
class LazyOrder {
 public:
  // Spreads the cases, which stay the caller's and in the order's hands until the next call. The
  // first and the last one are in their places. O(n), whatever the values. Throws std::bad_alloc;
  // there is no case to look at then.
  void Begin(std::vector<Case>& cases) {
    fSpread.reset();
    fEnds.clear();
    fIsSorted.clear();
    fCases = &cases;
    if (!std::is_sorted(cases.begin(), cases.end(), Sorter::IsLess)) {
      const typename Sorter::Spread spread(cases.data(), cases.size());
      if (spread.IsUseful()) {
        SpreadOut(spread);
        return;
      }
      Sorter::SortWith(fScratch, cases, [](const Case*, std::size_t) {});
    }
    fIsSorted.assign(1, true);
    fEnds.assign(1, static_cast<std::uint32_t>(cases.size()));
  }

  // How many different values there are: -0.0 is 0.0, and each NaN is a value of its own. After
  // Begin().
  unsigned int CountDistinct() {
    unsigned int count = 0;
    for (std::size_t bucket = 0; bucket < fEnds.size(); ++bucket) {
      const std::size_t size = SizeOf(bucket);
      std::optional<unsigned int> counted;
      if (!fIsSorted[bucket] && size >= kLeastHashed && size <= kMostHashed) {
        counted = CountByParts(bucket);
      }
      if (!counted) {
        SortBucket(bucket);
        counted = CountDistinctSorted(fCases->data() + FirstOf(bucket), size);
      }
      count += *counted;
    }
    return count;
  }

  // Sorts what shares a bucket with the case at the position, and returns where the bucket ends:
  // the cases up to there, from that one on, are in their places.
  std::size_t LookInto(std::size_t position) {
    const std::size_t bucket = BucketAt(position);
    SortBucket(bucket);
    return fEnds[bucket];
  }

  // Where the bucket of the case at the position ends, in whatever order its cases are. No value
  // is on both sides of an end.
  std::size_t EndOfBucket(std::size_t position) const { return fEnds[BucketAt(position)]; }

  void SortAll() {
    for (std::size_t bucket = 0; bucket < fEnds.size(); ++bucket) SortBucket(bucket);
    LetGo();
  }

  // Of memory, if it is much. It is taken again when there is a bucket to sort.
  void LetGo() { Sorter::DropIfLarge(fScratch); }

 private:
  using Sorter = TupleSorter<Case>;

  static constexpr std::size_t kLeastHashed = 32;    // below, sorting is faster
  static constexpr std::size_t kMostHashed = 16384;  // above, the hash table would not stay near
  static constexpr int kHashBits = 13;
  static constexpr std::uint16_t kNone = 0xffff;
  static_assert(kMostHashed < kNone);

  void SpreadOut(const typename Sorter::Spread& spread) {
    auto ends = Sorter::SpreadOut(*fCases, fScratch, spread);
    fIsSorted.assign(ends.size(), false);
    fEnds.swap(ends);
    fSpread = spread;
    LookInto(0);
    LookInto(fCases->size() - 1);
  }

  std::size_t FirstOf(std::size_t bucket) const { return bucket == 0 ? 0 : fEnds[bucket - 1]; }
  std::size_t SizeOf(std::size_t bucket) const { return fEnds[bucket] - FirstOf(bucket); }

  std::size_t BucketAt(std::size_t position) const {
    return static_cast<std::size_t>(std::upper_bound(fEnds.begin(), fEnds.end(), position) -
                                    fEnds.begin());
  }

  void SortBucket(std::size_t bucket) {
    if (fIsSorted[bucket]) return;
    const std::size_t first = FirstOf(bucket);
    const std::size_t end = fEnds[bucket];
    Sorter::Extend(fScratch, end - first);
    Sorter::SortBucket(fCases->data() + first, fScratch.data(), end - first,
                       first > 0 && end < fCases->size(), *fSpread);
    fIsSorted[bucket] = true;
  }

  // By a hash table of the bucket's different values, whose hash is their part of the bucket. None
  // when too many share a part. For a bucket between others.
  std::optional<unsigned int> CountByParts(std::size_t bucket) {
    constexpr std::uint32_t kPartMask = (1U << Sorter::Spread::kPartBits) - 1;
    constexpr int kShift = Sorter::Spread::kPartBits - kHashBits;
    const Case* const first = fCases->data() + FirstOf(bucket);
    const Case* const end = fCases->data() + fEnds[bucket];
    Sorter::Extend(fScratch, SizeOf(bucket));
    Case* const values = fScratch.data();
    const EqualParts parts = fSpread->GetParts();
    fNewest.assign(std::size_t{1} << kHashBits, kNone);
    fOlder.resize(kMostHashed);
    std::uint16_t count = 0;
    std::size_t stepsLeft = 4 * SizeOf(bucket);
    for (const Case* item = first; item != end; ++item) {
      FetchAhead(item, kFarAhead * 2);
      const auto part = static_cast<std::uint32_t>(parts.InnerPartOf(Unpacked(*item).value));
      std::uint16_t& newest = fNewest[(part & kPartMask) >> kShift];
      std::uint16_t other = newest;
      while (other != kNone && !HaveSameValue(values[other], *item)) {
        if (stepsLeft-- == 0) return std::nullopt;
        other = fOlder[other];
      }
      if (other != kNone) continue;
      values[count] = *item;
      fOlder[count] = newest;
      newest = count++;
    }
    return count;
  }

  std::vector<Case>* fCases = nullptr;
  std::vector<Case> fScratch;
  std::optional<typename Sorter::Spread> fSpread;  // of cases that are spread
  typename Sorter::Ends fEnds;                     // of the buckets; one for few cases
  std::vector<bool> fIsSorted;                     // by bucket
  // Of the values in a hash table: the newest one of each hash, and the one that is older by one.
  std::vector<std::uint16_t> fNewest;
  std::vector<std::uint16_t> fOlder;
};

}  // namespace MCBinning
