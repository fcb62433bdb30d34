#include "common/display.h"

namespace MCBinning {

namespace {

template <typename Values>
std::ostream& DisplayLine(std::ostream& os, const std::string& label, const Values& values) {
  os << label << ':';
  for (const auto value : values) os << ' ' << value;
  return os << '\n';
}

}  // namespace

std::ostream& DisplayB(std::ostream& os, const std::string& label,
                       const std::vector<bool>& values) {
  return DisplayLine(os, label, values);
}

std::ostream& DisplayD(std::ostream& os, const std::string& label,
                       const std::vector<double>& values) {
  return DisplayLine(os, label, values);
}

std::ostream& DisplayMI(std::ostream& os, const std::string& label,
                        const std::map<int, int>& values) {
  os << label << ":\n";
  for (const auto& [key, value] : values) os << '\t' << key << " -> " << value << '\n';
  return os;
}

std::ostream& DisplayMI(std::ostream& os, const std::string& label,
                        const std::vector<std::vector<int>>& rows) {
  os << label << ":\n";
  for (const std::vector<int>& row : rows) {
    for (const int value : row) os << '\t' << value;
    os << '\n';
  }
  return os;
}

}  // namespace MCBinning
