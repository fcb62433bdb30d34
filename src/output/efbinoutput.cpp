#include "output/efbinoutput.h"

#include <utility>

#include "common/guard.h"
#include "common/statuscodes.h"
#include "output/displayresults.h"

using MCBinning::Error;
using MCBinning::MCStatus;
using MCBinning::StatusCode;

EFBINOutput::EFBINOutput() = default;

EFBINOutput::~EFBINOutput() = default;

MCStatus EFBINOutput::SetAttributeResults(MCStatus status, const std::vector<double>& cutPoints,
                                          const std::vector<double>& binWeights, int attributeIndex,
                                          unsigned int nDistinctValues, double totalWeight,
                                          double totalWeightWithMissing, double minimum,
                                          double maximum) {
  if (attributeIndex < 0) return Error(StatusCode::kNoSuchAttribute);
  return MCBinning::Guard([&] {
    BINAttributeResults record;
    record.fStatus = status;
    record.fAttributeIndex = attributeIndex;
    record.fCutPoints = cutPoints;
    record.fCellCounts = binWeights;
    record.fNDistinctValues = nDistinctValues;
    record.fTotalWeight = totalWeight;
    record.fTotalWeightWithMissing = totalWeightWithMissing;
    record.fMinimum = minimum;
    record.fMaximum = maximum;
    fResults.push_back(std::move(record));
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
