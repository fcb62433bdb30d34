#pragma once

#include <ostream>
#include <vector>

#include "common/displayframe.h"
#include "common/mcstatus.h"

namespace MCBinning {

// The lines that the dumps of supervised and equal-frequency results share.

template <typename Results>
void DisplayTotals(std::ostream& os, const Results& results) {
  os << "Number of distinct values = " << Plain(results.GetNDistinctValues()) << '\n'
     << "Total weight = " << results.GetTotalWeight() << '\n'
     << "Total weight with missing = " << results.GetTotalWeightWithMissing() << '\n'
     << "Minimum = " << results.GetMinimum() << '\n'
     << "Maximum = " << results.GetMaximum() << '\n';
}

inline void DisplayStatusAndCutPoints(std::ostream& os, const MCStatus& status,
                                      const std::vector<double>& cutPoints) {
  if (!status.IsOK()) os << "Status has error code " << Plain(status.GetErrorCode()) << '\n';
  os << "Number of cutpoints = " << Plain(cutPoints.size());
  if (!cutPoints.empty()) os << ", the cutpoints:";
  os << '\n';
  for (const double cutPoint : cutPoints) os << cutPoint << '\n';
}

// One line, each count followed by two blanks.
inline void DisplayCounts(std::ostream& os, const std::vector<double>& counts) {
  for (const double count : counts) os << count << "  ";
  os << '\n';
}

// A result container: its records between the frame's lines.
template <typename Records>
std::ostream& DisplayRecords(std::ostream& os, const char* className, const Records& records) {
  DisplayStart(os, className) << "cut point :";
  for (const auto& record : records) record.Display(os);
  return DisplayEnd(os << '\n', className);
}

}  // namespace MCBinning
