#include "support/agreement.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <sstream>

namespace {

using Table = std::vector<std::vector<double>>;

bool SameBits(double a, double b) {
  if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
  return a == b && std::signbit(a) == std::signbit(b);
}

std::string Joined(const std::vector<double>& values) {
  std::ostringstream text;
  text << std::setprecision(17);
  for (const double value : values) text << ' ' << value;
  return text.str();
}

// One weight per bin.
Table Rows(const std::vector<double>& counts) {
  Table rows;
  for (const double weight : counts) rows.push_back({weight});
  return rows;
}

// A pair without any counts is stored as one bin without weights.
Table Rows(const Table& counts) {
  return counts.size() == 1 && counts.front().empty() ? Table{} : counts;
}

class Report {
 public:
  void Compare(const std::string& field, const std::vector<double>& expected,
               const std::vector<double>& actual) {
    if (::SameBits(expected, actual)) return;
    fText += "  " + field + ": expected" + Joined(expected) + ", got" + Joined(actual) + '\n';
  }
  void CompareTexts(const std::string& field, const std::string& expected,
                    const std::string& actual) {
    if (expected != actual)
      fText += "  " + field + ": expected " + expected + ", got " + actual + '\n';
  }
  const std::string& GetText() const { return fText; }

 private:
  std::string fText;
};

template <class Result>
Report CompareCommon(const reference::Binning& expected, const Result& actual) {
  Report report;
  report.CompareTexts("status", Text(expected.status), Text(actual.GetStatus()));
  report.Compare("cut points", expected.cutPoints, actual.GetCutPoints());
  const Table counts = Rows(actual.GetCellCounts());
  report.CompareTexts("bins", std::to_string(expected.counts.size()),
                      std::to_string(counts.size()));
  for (std::size_t bin = 0; bin < counts.size() && bin < expected.counts.size(); ++bin) {
    report.Compare("bin " + std::to_string(bin), expected.counts[bin], counts[bin]);
  }
  report.Compare(
      "distinct values, weight, weight with missing, minimum, maximum",
      {static_cast<double>(expected.cases.distinctValues), expected.cases.totalWeight,
       expected.cases.totalWeightWithMissing, expected.cases.minimum, expected.cases.maximum},
      {static_cast<double>(actual.GetNDistinctValues()), actual.GetTotalWeight(),
       actual.GetTotalWeightWithMissing(), actual.GetMinimum(), actual.GetMaximum()});
  return report;
}

std::string StatusText(long code, int severity, const long (&data)[3]) {
  std::ostringstream text;
  text << code << '/' << severity << '[' << data[0] << ' ' << data[1] << ' ' << data[2] << ']';
  return text.str();
}

}  // namespace

bool SameBits(const std::vector<double>& a, const std::vector<double>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](double x, double y) { return SameBits(x, y); });
}

std::string Text(const MCBinning::MCStatus& status) {
  const int severity = status.IsError() ? -1 : status.IsWarning() ? 1 : 0;
  return StatusText(
      status.GetErrorCode(), severity,
      {status.GetDiscreteDatum(0), status.GetDiscreteDatum(1), status.GetDiscreteDatum(2)});
}

std::string Text(const reference::Status& status) {
  return StatusText(status.code, status.severity, {status.data[0], status.data[1], status.data[2]});
}

std::string Differences(const reference::Binning& expected,
                        const BINAttributeTargetResults& actual) {
  Report report = CompareCommon(expected, actual);
  report.Compare("model entropy", {expected.modelEntropy}, {actual.GetModelEntropy()});
  if (report.GetText().empty()) return {};
  return " target " + std::to_string(actual.GetTargetIndex()) + ":\n" + report.GetText();
}

std::string Differences(const reference::Binning& expected, const BINAttributeResults& actual) {
  return CompareCommon(expected, actual).GetText();
}
