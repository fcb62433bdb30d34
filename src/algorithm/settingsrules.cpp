#include "algorithm/settingsrules.h"

#include <cstdio>

#include "common/displayframe.h"

namespace MCBinning {

std::string DirectoryOfTempName(const std::string& name) {
  const std::string::size_type slash = name.rfind('/');
  if (slash == std::string::npos || slash == 0) return "./";
  return name.substr(0, slash);
}

std::string DefaultTempDirectory() {
  // The names that the C library would hand out lie in P_tmpdir; asking for one would only
  // add its race, as none is used.
  return DirectoryOfTempName(P_tmpdir "/name");
}

void DisplaySkippedReports(std::ostream& os, int attributeReports, int casesReports) {
  os << "Number of progress reports to skip when create bins for attribute = "
     << Plain(attributeReports) << '\n'
     << "Number of progress reports to skip when read data file = " << Plain(casesReports) << '\n';
}

}  // namespace MCBinning
