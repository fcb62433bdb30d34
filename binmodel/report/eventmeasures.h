#pragma once

#include <optional>

#include "binmodel/model/binmodel.h"

namespace MCBinModel {

// What reports tell of a result about a target of two classes; nothing of other results, and where
// a measure does not exist.
struct EventMeasures {
  std::optional<double> informationValue;
  std::optional<double> areaUnderCurve;
  std::optional<double> gini;
  std::optional<double> kolmogorovSmirnov;
};

EventMeasures MeasureEvent(const BinModel& model, const AttributeBins& bins);

// Of other counts, in the order that the bins have in `ranking`.
EventMeasures MeasureEvent(const BinModel& model, const AttributeBins& ranking,
                           const AttributeBins& counted);

}  // namespace MCBinModel
