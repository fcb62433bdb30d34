#pragma once

namespace MCBinModel {

enum class Algorithm { kSupervised, kEqualFrequency };

// How bins are made. What only the other algorithm reads keeps its default.
struct BinSettings {
  Algorithm algorithm = Algorithm::kSupervised;
  bool rightClosed = true;  // a cut point belongs to the bin below it, else to the one above

  // Supervised.
  int prebinAbove = 1000;  // distinct values; 0: never
  int prebins = 1000;
  double smallBins = 0.0;  // share of a neighbour's weight, 0 to 1

  // Equal-frequency.
  int bins = 10;
};

}  // namespace MCBinModel
