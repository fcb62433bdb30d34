#include "common/display.h"

#include "common/displayframe.h"

namespace MCBinning {

std::ostream& DisplayB(std::ostream& os, const std::string& label,
                       const std::vector<bool>& values) {
  os << label << ':';
  for (const bool value : values) os << ' ' << Plain(value);
  return os << '\n';
}

std::ostream& DisplayD(std::ostream& os, const std::string& label,
                       const std::vector<double>& values) {
  os << label << ':';
  for (const double value : values) os << ' ' << value;
  return os << '\n';
}

std::ostream& DisplayMI(std::ostream& os, const std::string& label,
                        const std::map<int, int>& values) {
  os << label << ":\n";
  for (const auto& [key, value] : values)
    os << '\t' << Plain(key) << " -> " << Plain(value) << '\n';
  return os;
}

std::ostream& DisplayMI(std::ostream& os, const std::string& label,
                        const std::vector<std::vector<int>>& rows) {
  os << label << ":\n";
  for (const std::vector<int>& row : rows) {
    for (const int value : row) os << '\t' << Plain(value);
    os << '\n';
  }
  return os;
}

}  // namespace MCBinning
