#pragma once

#include "metadata/bindatatuple.h"
#include "metadata/efbindatatuple.h"
#include "metadata/tuplesort.h"

namespace MCBinning {

// The sorting buffers of a data set, one for each kind of case.
class CaseSorter {
 public:
  void Sort(std::vector<BINDataTuple>& cases) { fTuples.Sort(cases); }
  void Sort(std::vector<EFBINDataTuple>& cases) { fEFTuples.Sort(cases); }

 private:
  TupleSorter<BINDataTuple> fTuples;
  TupleSorter<EFBINDataTuple> fEFTuples;
};

}  // namespace MCBinning
