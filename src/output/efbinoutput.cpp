#include "output/efbinoutput.h"

#include <algorithm>
#include <utility>

#include "common/guard.h"
#include "common/statuscodes.h"
#include "output/displayresults.h"
#include "output/resultstore.h"

using MCBinning::AttributeResult;
using MCBinning::Error;
using MCBinning::MCStatus;
using MCBinning::ResultStore;
using MCBinning::StatusCode;

void ResultStore::Append(EFBINOutput& output, const AttributeResult& result) {
  if (result.attribute < 0) return;
  BINAttributeResults record;
  record.fStatus = result.status;
  record.fAttributeIndex = result.attribute;
  record.fCutPoints = result.cutPoints;
  record.fCellCounts = result.binWeights;
  record.fNDistinctValues = result.totals.distinctValues;
  record.fTotalWeight = result.totals.weight;
  record.fTotalWeightWithMissing = result.totals.weightWithMissing;
  record.fMinimum = result.totals.minimum;
  record.fMaximum = result.totals.maximum;
  record.fMissingWeight = result.totals.missingWeights.empty()
                              ? record.fTotalWeightWithMissing - record.fTotalWeight
                              : result.totals.missingWeights.front();
  const std::vector<BINAttributeResults>& earlier = output.fResults;
  const bool isAscending =
      output.fAscendingCount == earlier.size() &&
      (earlier.empty() || earlier.back().GetAttributeIndex() < result.attribute);
  output.fResults.push_back(std::move(record));
  if (isAscending) ++output.fAscendingCount;
}

EFBINOutput::EFBINOutput() = default;

EFBINOutput::~EFBINOutput() = default;

MCStatus EFBINOutput::SetAttributeResults(MCStatus status, const std::vector<double>& cutPoints,
                                          const std::vector<double>& binWeights, int attributeIndex,
                                          unsigned int nDistinctValues, double totalWeight,
                                          double totalWeightWithMissing, double minimum,
                                          double maximum) {
  if (attributeIndex < 0) return Error(StatusCode::kNoSuchAttribute);
  return MCBinning::Guard([&] {
    ResultStore::Append(*this,
                        {status,
                         attributeIndex,
                         {nDistinctValues, totalWeight, totalWeightWithMissing, minimum, maximum},
                         cutPoints,
                         binWeights});
    return MCStatus();
  });
}

MCStatus EFBINOutput::GetAllCutPoints(std::vector<BINAttributeResults>& out) const {
  if (fResults.empty()) return Error(StatusCode::kNoResults);
  return MCBinning::Guard([&] {
    out = fResults;
    return MCStatus();
  });
}

MCStatus EFBINOutput::GetAttributeCutPoints(int attributeIndex, BINAttributeResults& out) const {
  if (attributeIndex < 0) return Error(StatusCode::kNoSuchVariable);
  const BINAttributeResults* const record = FindFirst(attributeIndex);
  if (record == nullptr) return Error(StatusCode::kNoSuchVariable);
  return MCBinning::Guard([&] {
    out = *record;
    return record->GetStatus();
  });
}

// Most runs go through the attributes in ascending order: those need no look at every record.
const BINAttributeResults* EFBINOutput::FindFirst(int attributeIndex) const {
  const auto endOfAscending = fResults.begin() + static_cast<std::ptrdiff_t>(fAscendingCount);
  const auto found = std::lower_bound(
      fResults.begin(), endOfAscending, attributeIndex,
      [](const auto& record, int index) { return record.GetAttributeIndex() < index; });
  if (found != endOfAscending && found->GetAttributeIndex() == attributeIndex) return &*found;
  const auto later = std::find_if(endOfAscending, fResults.end(), [&](const auto& record) {
    return record.GetAttributeIndex() == attributeIndex;
  });
  return later != fResults.end() ? &*later : nullptr;
}

std::ostream& EFBINOutput::Display(std::ostream& os) const {
  return MCBinning::DisplayRecords(os, "EFBINOutput", fResults);
}
