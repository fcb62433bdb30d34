#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace MCBinning {

// Sorts cases ascending by value: equal values (-0.0 and 0.0 are equal) keep their order,
// NaN values of either sign come last, in their order too.
//
// A radix sort over the order-preserving bits of the values, from the least significant
// digit, which reads and writes every case once for each of at most three digits. Those
// cover the leading 33 bits that differ at all; the few cases that agree in them are put in
// order afterwards, so the time stays O(n) whatever the values. Sorted input is noticed.
template <typename Case>
class TupleSorter {
 public:
  // Sorts `cases`. Needs as much memory again, kept for the next call unless it is much.
  void Sort(std::vector<Case>& cases) {
    const Order order = LookAt(cases.data(), cases.size());
    if (order.isSorted) return;
    fScratch.reserve(cases.capacity());  // the two may change places
    fScratch.resize(cases.size());
    if (SortRange(cases.data(), fScratch.data(), cases.size(), order)) cases.swap(fScratch);
    if (fScratch.size() * sizeof(Case) > kLargestKeptBuffer) std::vector<Case>().swap(fScratch);
  }

 private:
  using Key = std::uint64_t;

  static constexpr int kDigitBits = 11;
  static constexpr int kMostDigits = 3;
  static constexpr std::size_t kBucketCount = std::size_t{1} << kDigitBits;
  static constexpr std::size_t kSmallCount = 256;  // below, comparing is faster
  static constexpr std::size_t kShortRun = 24;     // below, inserting is faster
  static constexpr std::size_t kLargestKeptBuffer = std::size_t{32} << 20;  // bytes

  using Histogram = std::array<std::uint32_t, kBucketCount>;

  // Ascends with the value; the same for -0.0 and 0.0, and for all NaN.
  static Key KeyOf(const Case& item) {
    const double value = item.value;
    const Key bits = std::bit_cast<Key>(value + 0.0);  // makes 0.0 of -0.0
    const Key flip = static_cast<Key>(static_cast<std::int64_t>(bits) >> 63) | (Key{1} << 63);
    return value != value ? ~Key{0} : bits ^ flip;
  }

  static bool IsLess(const Case& a, const Case& b) { return KeyOf(a) < KeyOf(b); }

  struct Order {
    bool isSorted;
    Key differing;  // the bits in which not all keys agree
  };

  // One pass without branches.
  static Order LookAt(const Case* cases, std::size_t count) {
    Order order{true, 0};
    if (count == 0) return order;
    const Key firstKey = KeyOf(cases[0]);
    Key previous = firstKey;
    for (std::size_t i = 1; i < count; ++i) {
      const Key key = KeyOf(cases[i]);
      order.isSorted = order.isSorted & (previous <= key);
      order.differing |= key ^ firstKey;
      previous = key;
    }
    return order;
  }

  // Returns whether the sorted cases are in `scratch` now.
  static bool SortRange(Case* cases, Case* scratch, std::size_t count, const Order& order) {
    if (count < kSmallCount) {
      std::stable_sort(cases, cases + count, IsLess);
      return false;
    }
    const int highBits = static_cast<int>(std::bit_width(order.differing));
    const int lowBits = std::max(0, highBits - kMostDigits * kDigitBits);
    const bool isInScratch = SortByDigits(cases, scratch, count, lowBits, highBits);
    if (lowBits > 0) {
      if (isInScratch) std::swap(cases, scratch);
      SortRuns(cases, scratch, count, lowBits);
    }
    return isInScratch;
  }

  // By the bits from `lowBits` up to, but not with, `highBits`. Returns as SortRange() does.
  static bool SortByDigits(Case* cases, Case* scratch, std::size_t count, int lowBits,
                           int highBits) {
    std::array<Histogram, kMostDigits> histograms{};
    for (std::size_t i = 0; i < count; ++i) {
      const Key key = KeyOf(cases[i]) >> lowBits;
      for (int digit = 0; digit < kMostDigits; ++digit) {
        ++histograms[static_cast<std::size_t>(digit)][DigitOf(key, digit)];
      }
    }
    Case* from = cases;
    Case* to = scratch;
    for (int digit = 0; lowBits + digit * kDigitBits < highBits; ++digit) {
      Histogram& positions = histograms[static_cast<std::size_t>(digit)];
      if (positions[DigitOf(KeyOf(from[0]) >> lowBits, digit)] == count) continue;  // one bucket
      std::uint32_t position = 0;
      for (std::uint32_t& bucket : positions) position += std::exchange(bucket, position);
      for (std::size_t i = 0; i < count; ++i) {
        to[positions[DigitOf(KeyOf(from[i]) >> lowBits, digit)]++] = from[i];
      }
      std::swap(from, to);
    }
    return from != cases;
  }

  static std::size_t DigitOf(Key key, int digit) {
    return static_cast<std::size_t>(key >> (digit * kDigitBits)) & (kBucketCount - 1);
  }

  // Orders the cases that agree in all but their low bits.
  static void SortRuns(Case* cases, Case* scratch, std::size_t count, int lowBits) {
    for (std::size_t i = 1; i < count; ++i) {
      if (!IsLess(cases[i], cases[i - 1])) continue;
      const Key prefix = KeyOf(cases[i]) >> lowBits;
      const auto isInRun = [&](const Case& item) { return KeyOf(item) >> lowBits == prefix; };
      std::size_t first = i;
      while (first > 0 && isInRun(cases[first - 1])) --first;
      std::size_t last = i + 1;
      while (last < count && isInRun(cases[last])) ++last;
      if (last - first < kShortRun) {
        InsertionSort(cases + first, last - first);
      } else {
        const std::size_t runLength = last - first;
        const Order order = LookAt(cases + first, runLength);
        if (SortRange(cases + first, scratch, runLength, order)) {
          std::copy_n(scratch, runLength, cases + first);
        }
      }
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
};

}  // namespace MCBinning
