#pragma once

#include <stdexcept>

namespace MCBin {

// The input was refused or the run failed. The message says where and what to do; the
// tool prints it and ends with exit code 1.
class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace MCBin
