#pragma once

#include <optional>

#include "../model/binmodel.h"
#include "../model/binmodelexport.h"

namespace MCBinModel {

// How well the bins alone rank cases by a target's event; docs/statistics.md has the formulas and
// their sources. The bins stand in the order of their event rates, and the missing cases are a bin
// like the others.
struct Discrimination {
  double areaUnderCurve = 0.5;     // 0.5 without any order, 1 when all events stand last
  double kolmogorovSmirnov = 0.0;  // largest distance of the two classes' cumulative shares

  // From 0 to 1, or below 0 where the order is turned round.
  double GetGini() const { return 2.0 * areaUnderCurve - 1.0; }
};

// Of the cases in `bins`. Nothing when a class has no weight. Requires class weights of two
// categories, of which `event` is one.
MCBINMODEL_API std::optional<Discrimination> MeasureDiscrimination(const AttributeBins& bins,
                                                                   std::size_t event);

// Of cases counted on other data, in the order that the bins had in `ranking`: below 0.5 when it is
// turned round there. A bin without weight in `ranking` stands where the overall event rate is.
// Requires as many bins in both.
MCBINMODEL_API std::optional<Discrimination> MeasureDiscrimination(const AttributeBins& ranking,
                                                                   const AttributeBins& counted,
                                                                   std::size_t event);

}  // namespace MCBinModel
