#include "binmodel/report/numbertext.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <optional>

#include "binmodel/text/number.h"

namespace MCBinModel {

namespace {

constexpr double kSmallPart = 1.0 / 16.0;

// Without zeros before the first digit, and without the exponent.
int CountDigits(const std::string& number) {
  int digits = 0;
  for (const char c : number) {
    if (c == 'e') break;
    const bool isDigit = c >= '0' && c <= '9';
    if (isDigit && (digits > 0 || c != '0')) ++digits;
  }
  return digits;
}

// With the fewest digits that are no further away than `tolerance`.
std::string RoundedText(double value, double tolerance) {
  constexpr int kMostDigitsShown = 9;
  constexpr int kMostDigits = 17;
  constexpr int kFewestDigits = 4;
  std::string exact = FormatNumber(value);
  if (CountDigits(exact) <= kMostDigitsShown) return exact;
  const int wholeDigits = static_cast<int>(std::floor(std::log10(std::abs(value)))) + 1;
  for (int digits = std::max(kFewestDigits, wholeDigits); digits < kMostDigits; ++digits) {
    std::string text = fmt::format("{:.{}g}", value, digits);
    const double shown = ParseNumber(text).value;
    if (std::abs(shown - value) <= tolerance) return FormatNumber(shown);
  }
  return exact;
}

// The tolerance where it is small beside what lies between the cut and the smallest and largest
// value.
double WithinEnds(const AttributeBins& bins, double cut, double tolerance) {
  for (const std::optional<double>& end : {bins.minimum, bins.maximum}) {
    if (end && *end != cut) tolerance = std::min(tolerance, kSmallPart * std::abs(cut - *end));
  }
  return tolerance;
}

}  // namespace

NumberText::NumberText(const VariableInfo& attribute, const AttributeBins& bins)
    : fAttribute(attribute) {
  const std::vector<double>& cuts = bins.cutPoints;
  if (attribute.isTime) {
    for (const double cut : cuts) fCutPoints.push_back(attribute.FormatValue(cut));
    return;
  }
  if (bins.minimum && bins.maximum && bins.distinctValues > 1) {
    fTolerance = kSmallPart * (*bins.maximum / static_cast<double>(bins.distinctValues) -
                               *bins.minimum / static_cast<double>(bins.distinctValues));
  }
  for (std::size_t i = 0; i < cuts.size(); ++i) {
    double tolerance = fTolerance;
    if (i > 0) tolerance = std::min(tolerance, kSmallPart * (cuts[i] - cuts[i - 1]));
    if (i + 1 < cuts.size()) tolerance = std::min(tolerance, kSmallPart * (cuts[i + 1] - cuts[i]));
    fCutPoints.push_back(RoundedText(cuts[i], WithinEnds(bins, cuts[i], tolerance)));
  }
  // The ends are not rounded beyond the cuts, either.
  if (cuts.empty()) return;
  fTolerance = WithinEnds(bins, cuts.front(), fTolerance);
  fTolerance = WithinEnds(bins, cuts.back(), fTolerance);
}

std::string NumberText::OfValue(double value) const {
  return fAttribute.isTime ? fAttribute.FormatValue(value) : RoundedText(value, fTolerance);
}

std::string NumberText::OfInterval(std::size_t bin, bool rightClosed) const {
  const bool last = bin == fCutPoints.size();
  const std::string low = bin == 0 ? "(-inf" : (rightClosed ? "(" : "[") + fCutPoints[bin - 1];
  return low + ", " + (last ? "+inf)" : fCutPoints[bin] + (rightClosed ? "]" : ")"));
}

}  // namespace MCBinModel
