#pragma once

#include <vector>

#include "common/mcstatus.h"
#include "common/statuscodes.h"
#include "metadata/bindataset.h"
#include "metadata/pass/bintable.h"
#include "metadata/pass/casestore.h"

namespace MCBinning {

// What the algorithms ask of a data set beyond its operations: the cases of an attribute in
// whatever kind they are kept, without tuples that nobody needs. Errors are thrown, as everywhere
// in inner code.
class LoadedCases {
 public:
  // As BINDataSet::GetAttribute(). Throws StatusError and std::bad_alloc.
  static void Load(BINDataSet& dataSet, unsigned int attribute, unsigned int target) {
    dataSet.Load(attribute, target);
  }
  static void Load(BINDataSet& dataSet, unsigned int attribute) { dataSet.Load(attribute); }

  // `visit` takes a vector of sorted cases of any kind and returns the same type for all.
  template <typename Visit>
  static auto VisitSupervised(const BINDataSet& dataSet, const Visit& visit) {
    return dataSet.fCases->VisitSupervised(visit);
  }

  // The same, and their LazyOrder; null when they are sorted.
  template <typename Visit>
  static auto VisitEqualFrequency(BINDataSet& dataSet, const Visit& visit) {
    return dataSet.fCases->VisitEqualFrequency(visit);
  }

  // The weights of the loaded attribute's cases that lack its value alone, by target category; one
  // without target. None when nothing was read.
  static const std::vector<double>& GetMissingWeights(const BINDataSet& dataSet) {
    return dataSet.fCases->GetMissingWeights();
  }

  // As BINDataSet::CreateBinTable(), with one cut point at least: false for warning 120002. Throws
  // std::bad_alloc.
  static bool FillBinTable(const BINDataSet& dataSet, const std::vector<double>& cutPoints,
                           bool rightBorderClosed, std::vector<double>& table) {
    return dataSet.FillBinTable(cutPoints, rightBorderClosed, table);
  }

  // The bin table of one row per distinct value of the attribute: `useCounts` takes a CountTable
  // and a vector of the sorted cases it counts, of any kind, or else `useWeights` a
  // DistinctBinTable. Both return a status; the answer is warning 120002 when there is no such
  // table. Throws std::bad_alloc.
  template <typename UseCounts, typename UseWeights>
  static MCStatus UseBinTable(BINDataSet& dataSet, bool rightBorderClosed,
                              const UseCounts& useCounts, const UseWeights& useWeights) {
    CaseStore& store = *dataSet.fCases;
    if (store.GetCountTable().GetCounts() != nullptr) {
      const MCStatus misfit = Warning(StatusCode::kCutPointsMisfit);
      if (!HasBoundaries(dataSet.GetMaximum(), rightBorderClosed)) return misfit;
      return store.VisitSupervised([&](const auto& cases) {
        return cases.empty() ? misfit : useCounts(store.GetCountTable(), cases);
      });
    }
    const MCStatus status = dataSet.FillDistinctBinTable(rightBorderClosed)
                                ? useWeights(store.GetBinTable())
                                : Warning(StatusCode::kCutPointsMisfit);
    store.DropLargeBinTable();
    return status;
  }
};

}  // namespace MCBinning
