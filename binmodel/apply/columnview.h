#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace MCBinModel {

// Where the values of a column lie in the caller's memory.
template <typename Value>
struct ColumnView {
  const Value* values = nullptr;  // the first one

  // Bytes from one value to the next; may be negative, as in a reversed view.
  std::ptrdiff_t stride = sizeof(Value);

  // A bit for every value, the lowest of a byte first: 0 where the value is missing. The column
  // begins at bit `validityOffset`. Null where none is missing. (The layout of Apache Arrow.)
  const std::uint8_t* validity = nullptr;
  std::size_t validityOffset = 0;

  // Whether the validity says that there is a value.
  bool IsValid(std::size_t index) const {
    if (validity == nullptr) return true;
    const std::size_t bit = validityOffset + index;
    return ((validity[bit / 8] >> (bit % 8)) & 1) != 0;
  }

  // Copied out, as a value within a row of mixed types may not be aligned.
  Value operator[](std::size_t index) const {
    Value value;
    std::memcpy(&value,
                reinterpret_cast<const char*>(values) + static_cast<std::ptrdiff_t>(index) * stride,
                sizeof(Value));
    return value;
  }
};

}  // namespace MCBinModel
