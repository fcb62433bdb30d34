#pragma once

#include <mcbinning/mcbinning.h>

#include <memory>
#include <string>
#include <vector>

// The bins of a small run, as text; who calls it decides by which library.
inline std::string DescribeBins() {
  BINVarList variables;
  const int value = variables.AddContVar("value", "", IBINVariable::RoleAttribute);
  const int side = variables.AddCatVar("side", "", std::vector<std::string>{"left", "right"},
                                       IBINVariable::RoleTarget);
  // begin encoder
  IBINEncoder* const encoder = variables.GetEncoderAt(side);
  if (encoder->GetEncoderType() != IBINVariable::MeasureStringCategorical) return "no strings";
  auto& sides = static_cast<BINStringEncoder&>(*encoder);
  // end encoder
  variables.SetMissingInterval(value, 40.0, 49.0);
  MCCommon::InMemoryRecordIterator records;
  for (int i = 0; i < 100; ++i) {
    records.Add({1.0 * i, static_cast<double>(sides.Encode(i < 60 ? "left" : "right"))});
  }

  BINSettings settings;
  settings.SetNumberOfBins(10);
  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> binning(factory.CreateBINAlgorithm(settings, variables));
  if (!binning) return "no algorithm";
  const MCBinning::MCStatus status = binning->CreateBins(records, nullptr, nullptr);
  BINAttributeTargetResults results;
  binning->GetBinningResults().GetAttributeTargetCutPoints(value, side, results);
  std::string text = "status " + std::to_string(status.GetErrorCode());
  for (const double cut : results.GetCutPoints()) text += ", cut at " + std::to_string(cut);
  return text + ", weight " + std::to_string(results.GetTotalWeight());
}
