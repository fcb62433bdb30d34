#pragma once

#include <sstream>
#include <string>

// What Display() writes.
template <typename Displayed>
std::string DisplayText(const Displayed& displayed) {
  std::ostringstream os;
  displayed.Display(os);
  return os.str();
}
