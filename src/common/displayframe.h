#pragma once

#include <concepts>
#include <ostream>
#include <string>

namespace MCBinning {

// The lines around every text dump: an empty line and "Start of <class> display" before,
// "End of <class> display" after.
inline std::ostream& DisplayStart(std::ostream& os, const char* className) {
  return os << "\nStart of " << className << " display\n";
}

inline std::ostream& DisplayEnd(std::ostream& os, const char* className) {
  return os << "End of " << className << " display\n";
}

// A whole number in decimal, a bool as 1 or 0, whatever flags the stream it goes to carries.
template <std::integral Number>
std::string Plain(Number number) {
  return std::to_string(number);
}

}  // namespace MCBinning
