#pragma once

#include <map>
#include <string>
#include <vector>

namespace MCBinModel {

// What joined bins keep the most of; docs/method.md.
enum class RefineObjective {
  kInformationGain,   // about the target; without target, about the bins that are joined
  kInformationValue,  // of the weights of evidence, for a target of two classes
};

// How the share of the event may go from each bin to the next one, from the lowest bin up. Equal
// shares are allowed by all; a peak or valley may lie at an end.
enum class RateTrend { kAny, kIncreasing, kDecreasing, kEither, kPeak, kValley };

// What bins are to be once neighbours are joined. By default everything is allowed. Shares and
// weights are those of the bins, so what is missing takes no part.
struct RefineSettings {
  RefineObjective objective = RefineObjective::kInformationGain;  // what the bins keep most of
  int minBins = 1;                                                // of an attribute
  int maxBins = 0;                                                // 0: any number
  double minShare = 0.0;   // of the weight, 0 to 1; of every bin
  double minWeight = 0.0;  // of every bin

  // For targets of two classes alone.
  double minEventWeight = 0.0;     // of every bin
  double minNoneventWeight = 0.0;  // the same
  RateTrend trend = RateTrend::kAny;
  double minRateDifference = 0.0;  // of neighbouring bins' shares of the event, 0 to 1

  // Whether something of these is asked for.
  bool NeedTwoClasses() const {
    return objective == RefineObjective::kInformationValue || trend != RateTrend::kAny ||
           minRateDifference > 0.0 || minEventWeight > 0.0 || minNoneventWeight > 0.0;
  }

  std::vector<std::string> attributes;  // which are refined; empty: all

  // Cut points by attribute, which are among those that there are.
  std::map<std::string, std::vector<double>> breaks;  // these and no others
  std::map<std::string, std::vector<double>> keep;    // these stay
};

}  // namespace MCBinModel
