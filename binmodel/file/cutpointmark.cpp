#include "binmodel/file/cutpointmark.h"

#include <fmt/format.h>

#include <bit>
#include <cstdint>

namespace MCBinModel {

std::string MarkCutPoints(const std::vector<double>& cutPoints, bool rightClosed) {
  constexpr std::uint64_t kPrime = 0x100000001b3;
  constexpr int kBits = 64;
  constexpr int kByteBits = 8;
  std::uint64_t hash = 0xcbf29ce484222325;
  const auto add = [&hash](std::uint64_t byte) { hash = (hash ^ byte) * kPrime; };
  add(rightClosed ? 1 : 0);
  for (const double cut : cutPoints) {
    const auto bits = std::bit_cast<std::uint64_t>(cut + 0.0);  // -0.0 is where 0.0 is
    for (int shift = 0; shift < kBits; shift += kByteBits) add((bits >> shift) & 0xff);
  }
  return fmt::format("{:016x}", hash);
}

}  // namespace MCBinModel
