#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "common/unsetallocator.h"

namespace MCBinning {

// Cases that weigh 1 each, before they are sorted and packed: their values, and their targets
// apart. To find a value's place is less work than in a packed case.
struct LooseCases {
  std::vector<double, UnsetAllocator<double>> values;
  std::vector<std::uint8_t, UnsetAllocator<std::uint8_t>> targets;

  std::size_t size() const { return values.size(); }

  // New ones have no value before they get one.
  void resize(std::size_t count) {
    values.resize(count);
    targets.resize(count);
  }
  void clear() { resize(0); }
};

}  // namespace MCBinning
