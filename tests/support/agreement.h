#pragma once

#include <string>
#include <vector>

#include "common/mcstatus.h"
#include "output/binattributeresults.h"
#include "output/binattributetargetresults.h"
#include "support/reference.h"

// "code/severity[data]", for messages and comparisons.
std::string Text(const MCBinning::MCStatus& status);
std::string Text(const reference::Status& status);

// Whether two lists hold the same bits; any NaN is as good as any other.
bool SameBits(const std::vector<double>& a, const std::vector<double>& b);

// What differs between the reference and a stored result, one line per field; empty when
// they agree bit by bit.
std::string Differences(const reference::Binning& expected,
                        const BINAttributeTargetResults& actual);
std::string Differences(const reference::Binning& expected, const BINAttributeResults& actual);

// The same for a whole run that no variable was refused in. `expected` bins what a result is of.
template <class Result, class Expected>
std::string RunDifferences(const MCBinning::MCStatus& status, const std::vector<Result>& results,
                           const Expected& expected) {
  std::string text;
  bool allOk = true;
  for (const Result& result : results) {
    allOk = allOk && result.GetStatus().IsOK();
    const std::string differences = Differences(expected(result), result);
    if (differences.empty()) continue;
    text += "attribute " + std::to_string(result.GetAttributeIndex()) + ":\n" + differences;
  }
  const char* const outcome = results.empty() ? "120004/-1[0 0 0]"
                              : allOk         ? "0/0[0 0 0]"
                                              : "120018/1[0 0 0]";
  if (Text(status) != outcome)
    text += std::string("run: expected ") + outcome + ", got " + Text(status);
  return text;
}
