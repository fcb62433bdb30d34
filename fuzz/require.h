#pragma once

#include <stdexcept>
#include <string>

// Nothing catches it in a fuzz target, which ends there: the input is kept as a finding.
struct NotSo : std::logic_error {
  using std::logic_error::logic_error;
};

inline void Require(bool holds, const std::string& what) {
  if (!holds) throw NotSo("not so: " + what);
}
