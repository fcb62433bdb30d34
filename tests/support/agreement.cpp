#include "support/agreement.h"

#include <charconv>
#include <cmath>
#include <iterator>

namespace {

// The fewest digits that give the same bits back.
void Append(std::string& text, double value) {
  char digits[32];
  const double oneNaN = std::isnan(value) ? std::fabs(value) : value;
  *std::to_chars(digits, std::end(digits) - 1, oneNaN).ptr = '\0';
  text.append(" ").append(digits);
}

}  // namespace

std::string Text(const MCBinning::MCStatus& status) { return Text(PlainForm(status)); }

std::string Text(const reference::Status& status) {
  std::string text = std::to_string(status.code) + '/' + std::to_string(status.severity);
  const auto& data = status.data;
  return text + '[' + std::to_string(data[0]) + ' ' + std::to_string(data[1]) + ' ' +
         std::to_string(data[2]) + ']';
}

std::string Text(const std::vector<double>& values) {
  std::string text = "[";
  for (const double value : values) Append(text, value);
  return text + " ]";
}

std::string Text(const reference::Binning& binning) {
  const reference::Cases& cases = binning.cases;
  std::string text = Text(binning.status);
  text += ", distinct values " + std::to_string(cases.distinctValues) + ", weight, with missing";
  Append(text, cases.totalWeight);
  Append(text, cases.totalWeightWithMissing);
  text += ", range";
  Append(text, cases.minimum);
  Append(text, cases.maximum);
  text += ", without value " + Text(cases.missingWeights);
  text += ", cut points " + Text(binning.cutPoints) + ", entropy";
  Append(text, binning.modelEntropy);
  text += ", best split " + Text(binning.bestSplit);
  text += ", bins";
  for (const std::vector<double>& weights : binning.counts) text += ' ' + Text(weights);
  return text;
}

reference::Status PlainForm(const MCBinning::MCStatus& status) {
  return {status.GetErrorCode(),
          status.IsError()     ? -1
          : status.IsWarning() ? 1
                               : 0,
          {status.GetDiscreteDatum(0), status.GetDiscreteDatum(1), status.GetDiscreteDatum(2)}};
}
