#pragma once

#include <memory>
#include <vector>

#include "metadata/bindataset.h"
#include "metadata/casebuffers.h"

namespace MCBinning {

// The cases of the attribute that a data set loaded last, in whatever kind it keeps them: as
// tuples, or as unweighted cases that nobody asked to see as tuples.
class LoadedCases {
 public:
  // `visit` takes a vector of sorted cases of any kind and returns the same type for all.
  template <typename Visit>
  static auto VisitSupervised(BINDataSet& dataSet, const Visit& visit) {
    return VisitEither(dataSet, dataSet.fTuples, visit);
  }

  template <typename Visit>
  static auto VisitEqualFrequency(BINDataSet& dataSet, const Visit& visit) {
    return VisitEither(dataSet, dataSet.fEFTuples, visit);
  }

  // `use` takes room for the table of the attribute, and returns a status.
  template <typename Use>
  static MCStatus UseBinTable(BINDataSet& dataSet, const Use& use) {
    const MCStatus status = use(dataSet.fBuffers->GetBinTable());
    dataSet.fBuffers->DropLargeBinTable();
    return status;
  }

 private:
  template <typename Tuple, typename Visit>
  static auto VisitEither(BINDataSet& dataSet, std::unique_ptr<std::vector<Tuple>>& tuples,
                          const Visit& visit) {
    return dataSet.fAreTuples ? visit(*tuples) : visit(dataSet.fBuffers->GetUnweighted(*tuples));
  }
};

}  // namespace MCBinning
