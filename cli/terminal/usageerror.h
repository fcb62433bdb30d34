#pragma once

#include <stdexcept>

namespace MCBin {

// The options make no sense, whatever the input holds: exit code 2.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace MCBin
