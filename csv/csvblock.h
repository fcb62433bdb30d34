#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "csv/plaindecimal.h"

namespace MCBin {

// Characters in memory, with room behind them to look ahead.
struct TextBuffer {
  static constexpr std::size_t kRoomBehind = PlainDecimal::kLookAhead;

  std::unique_ptr<char[]> data;
  std::size_t capacity = 0;  // without that room

  static TextBuffer OfCapacity(std::size_t capacity) {
    return {std::make_unique<char[]>(capacity + kRoomBehind), capacity};
  }
};

// Whole records of a file one after the other. `begin` and `end` are in the buffer, and *end is
// NUL.
struct CsvBlock {
  TextBuffer buffer;
  char* begin = nullptr;
  char* end = nullptr;
  std::uint64_t firstLine = 0;
  std::uint64_t lineEnds = 0;
};

}  // namespace MCBin
