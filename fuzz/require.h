#pragma once

#include <cstdio>
#include <cstdlib>

// Ends the program, so that the input is kept as a finding.
inline void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "not so: %s\n", what);
  std::abort();
}
