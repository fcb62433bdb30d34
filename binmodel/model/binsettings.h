#pragma once

namespace MCBinModel {

// By minimum description length against targets, or into bins of equal weight, which look at no
// target but may count its classes; docs/method.md.
enum class Algorithm { kSupervised, kEqualFrequency };

// BinSettings::evidenceAdjustment goes no further.
constexpr double kLargestEvidenceAdjustment = 1e6;

// How bins are made. What only the other algorithm reads keeps its default.
struct BinSettings {
  Algorithm algorithm = Algorithm::kSupervised;  // which of the two is used
  bool rightClosed = true;  // a cut point belongs to the bin below it, else to the one above

  // Supervised.
  int prebinAbove = 1000;  // distinct values; 0: never
  int prebins = 1000;      // bins that such an attribute is cut into first; from 2 up
  double smallBins = 0.0;  // share of a neighbour's weight, 0 to 1

  // Of what is measured against targets: a weight from 0 to kLargestEvidenceAdjustment, added to
  // every class of a bin with weight before weights of evidence are taken, so that none is
  // infinite; 0 changes nothing.
  double evidenceAdjustment = 0.0;

  // Equal-frequency.
  int bins = 10;  // from 2 up
};

}  // namespace MCBinModel
