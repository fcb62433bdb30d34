#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "common/largepages.h"
#include "metadata/bindatatuple.h"
#include "metadata/efbindatatuple.h"
#include "metadata/tuplesort.h"

namespace MCBinning {

// What stands for a tuple while all weights are 1: less to sort and to read. Whatever reads
// cases takes tuples or these alike.
struct UnweightedCase {
  static constexpr double weight = 1.0;
  double value;
  std::uint64_t target;
};

struct UnweightedEFCase {
  static constexpr double weight = 1.0;
  double value;
};

// These are kept on large pages.
using UnweightedCases = std::vector<UnweightedCase, LargePageAllocator<UnweightedCase>>;
using UnweightedEFCases = std::vector<UnweightedEFCase, LargePageAllocator<UnweightedEFCase>>;

// Whether such cases belong to supervised binning.
template <typename Case>
inline constexpr bool kHasTarget =
    std::is_same_v<Case, BINDataTuple> || std::is_same_v<Case, UnweightedCase>;

inline BINDataTuple ToTuple(const UnweightedCase& item) {
  return {item.value, static_cast<std::uint8_t>(item.target), UnweightedCase::weight};
}

inline EFBINDataTuple ToTuple(const UnweightedEFCase& item) {
  return {item.value, UnweightedEFCase::weight};
}

// A bin table of one row per distinct value, with the rows' boundaries.
struct DistinctBinTable {
  std::vector<double> boundaries;
  std::vector<double> weights;
};

// The unweighted cases of a data set, the buffers that cases of any kind are sorted in, and the
// target that the cases are read with.
class CaseBuffers {
 public:
  // The target of every record, or CaseCollector's kNoTarget; empty until it is read, and for
  // another target.
  std::vector<std::uint16_t>& GetTargets() { return fTargets; }

  // Kept from attribute to attribute: to get and give back so much memory takes longer than to
  // fill it.
  DistinctBinTable& GetBinTable() { return fBinTable; }

  // Lets go of a table that takes much memory.
  void DropLargeBinTable() {
    if (fBinTable.weights.capacity() > kMostKeptWeights) fBinTable = DistinctBinTable();
  }

  // The unweighted cases that become such tuples.
  UnweightedCases& GetUnweighted(const std::vector<BINDataTuple>&) { return fCases; }
  UnweightedEFCases& GetUnweighted(const std::vector<EFBINDataTuple>&) { return fEFCases; }

  void Sort(std::vector<BINDataTuple>& cases) { fTupleSorter.Sort(cases); }
  void Sort(std::vector<EFBINDataTuple>& cases) { fEFTupleSorter.Sort(cases); }
  void Sort(UnweightedCases& cases) { fCaseSorter.Sort(cases); }
  void Sort(UnweightedEFCases& cases) { fEFCaseSorter.Sort(cases); }

 private:
  static constexpr std::size_t kMostKeptWeights = std::size_t{4} << 20;

  std::vector<std::uint16_t> fTargets;
  DistinctBinTable fBinTable;
  UnweightedCases fCases;
  UnweightedEFCases fEFCases;
  TupleSorter<BINDataTuple> fTupleSorter;
  TupleSorter<EFBINDataTuple> fEFTupleSorter;
  TupleSorter<UnweightedCase, UnweightedCases> fCaseSorter;
  TupleSorter<UnweightedEFCase, UnweightedEFCases> fEFCaseSorter;
};

}  // namespace MCBinning
