#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

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
  // The target of every record, or kNoTarget, as the missing value was when it was read; empty
  // until then. Whoever chooses another target empties it.
  std::vector<std::uint16_t>& GetTargets() { return fTargets; }

  // Kept from attribute to attribute: to get and give back so much memory takes longer than to
  // fill it.
  DistinctBinTable& GetBinTable() { return fBinTable; }

  // Lets go of a table that takes much memory.
  void DropLargeBinTable() {
    const std::size_t kept = fBinTable.boundaries.capacity() + fBinTable.weights.capacity();
    if (kept > kMostKeptNumbers) fBinTable = DistinctBinTable();
  }

  // The unweighted cases that become such tuples.
  std::vector<UnweightedCase>& GetUnweighted(const std::vector<BINDataTuple>&) { return fCases; }
  std::vector<UnweightedEFCase>& GetUnweighted(const std::vector<EFBINDataTuple>&) {
    return fEFCases;
  }

  void Sort(std::vector<BINDataTuple>& cases) { fTupleSorter.Sort(cases); }
  void Sort(std::vector<EFBINDataTuple>& cases) { fEFTupleSorter.Sort(cases); }
  void Sort(std::vector<UnweightedCase>& cases) { fCaseSorter.Sort(cases); }
  void Sort(std::vector<UnweightedEFCase>& cases) { fEFCaseSorter.Sort(cases); }

 private:
  static constexpr std::size_t kMostKeptNumbers = std::size_t{4} << 20;

  std::vector<std::uint16_t> fTargets;
  DistinctBinTable fBinTable;
  std::vector<UnweightedCase> fCases;
  std::vector<UnweightedEFCase> fEFCases;
  TupleSorter<BINDataTuple> fTupleSorter;
  TupleSorter<EFBINDataTuple> fEFTupleSorter;
  TupleSorter<UnweightedCase> fCaseSorter;
  TupleSorter<UnweightedEFCase> fEFCaseSorter;
};

}  // namespace MCBinning
