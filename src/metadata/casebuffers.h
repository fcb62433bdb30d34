#pragma once

#include <cstdint>
#include <vector>

#include "metadata/bindatatuple.h"
#include "metadata/efbindatatuple.h"
#include "metadata/tuplesort.h"

namespace MCBinning {

// A supervised case while all weights are 1: a third less to move about than a tuple. For
// equal-frequency binning the value alone is such a case.
struct UnweightedCase {
  double value;
  std::uint64_t target;
};

inline BINDataTuple ToTuple(const UnweightedCase& item) {
  return {item.value, static_cast<std::uint8_t>(item.target), 1.0};
}
inline EFBINDataTuple ToTuple(double item) { return {item, 1.0}; }

// What a data set sorts its cases in.
class CaseBuffers {
 public:
  // The unweighted cases that become such tuples.
  std::vector<UnweightedCase>& GetUnweighted(const std::vector<BINDataTuple>&) {
    return fUnweighted;
  }
  std::vector<double>& GetUnweighted(const std::vector<EFBINDataTuple>&) { return fValues; }

  void Sort(std::vector<BINDataTuple>& cases) { fTupleSorter.Sort(cases); }
  void Sort(std::vector<EFBINDataTuple>& cases) { fEFTupleSorter.Sort(cases); }
  void Sort(std::vector<UnweightedCase>& cases) { fUnweightedSorter.Sort(cases); }
  void Sort(std::vector<double>& cases) { fValueSorter.Sort(cases); }

 private:
  std::vector<UnweightedCase> fUnweighted;
  std::vector<double> fValues;
  TupleSorter<BINDataTuple> fTupleSorter;
  TupleSorter<EFBINDataTuple> fEFTupleSorter;
  TupleSorter<UnweightedCase> fUnweightedSorter;
  TupleSorter<double> fValueSorter;
};

}  // namespace MCBinning
