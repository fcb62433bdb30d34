#pragma once

#include <ostream>

namespace MCBinning {

// The lines around every text dump: an empty line and "Start of <class> display" before,
// "End of <class> display" after.
inline std::ostream& DisplayStart(std::ostream& os, const char* className) {
  return os << "\nStart of " << className << " display\n";
}

inline std::ostream& DisplayEnd(std::ostream& os, const char* className) {
  return os << "End of " << className << " display\n";
}

}  // namespace MCBinning
