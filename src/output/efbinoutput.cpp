#include "output/efbinoutput.h"

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
  output.fResults.push_back(std::move(record));
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
  for (const BINAttributeResults& record : fResults) {
    if (record.GetAttributeIndex() != attributeIndex) continue;
    return MCBinning::Guard([&] {
      out = record;
      return record.GetStatus();
    });
  }
  return Error(StatusCode::kNoSuchVariable);
}

std::ostream& EFBINOutput::Display(std::ostream& os) const {
  return MCBinning::DisplayRecords(os, "EFBINOutput", fResults);
}
