#pragma once

#include <string>

namespace MCBin {

// What the user asked of `mcbin report`.
struct ReportOptions {
  std::string binFile;
  std::string output = "-";         // "-" is standard output
  double evidenceAdjustment = 0.0;  // added to each class weight of a bin; 0: nothing is smoothed
};

}  // namespace MCBin
