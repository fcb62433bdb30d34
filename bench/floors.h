#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "columns.h"

// Code that does the least that a step of the library can do, to compare the step with.
namespace bench {

// A bare radix sort by the member `value`, least significant digit first: six digits of 11
// bits, no NaN, no look at the data beforehand. Leaves the sorted cases in `cases`. Requires
// `scratch` of the same size.
template <typename Case>
void RadixSort(std::vector<Case>& cases, std::vector<Case>& scratch) {
  constexpr std::size_t kDigits = 6;
  constexpr std::size_t kDigitBits = 11;
  constexpr std::size_t kBuckets = std::size_t{1} << kDigitBits;
  // Negative values have their bits turned over, the others their sign bit only.
  const auto keyOf = [](const Case& item) {
    const auto bits = std::bit_cast<std::uint64_t>(item.value);
    const auto sign = static_cast<std::uint64_t>(static_cast<std::int64_t>(bits) >> 63);
    return bits ^ (sign | std::uint64_t{1} << 63);
  };
  const auto digitOf = [&](const Case& item, std::size_t digit) {
    return static_cast<std::size_t>(keyOf(item) >> (digit * kDigitBits)) & (kBuckets - 1);
  };

  std::vector<std::array<std::size_t, kBuckets>> positions(kDigits);
  for (const Case& item : cases) {
    for (std::size_t digit = 0; digit < kDigits; ++digit) ++positions[digit][digitOf(item, digit)];
  }
  for (std::size_t digit = 0; digit < kDigits; ++digit) {
    std::size_t position = 0;
    for (std::size_t& bucket : positions[digit]) position += std::exchange(bucket, position);
    for (const Case& item : cases) scratch[positions[digit][digitOf(item, digit)]++] = item;
    cases.swap(scratch);
  }
}

// Every bit of the data combined into one number: a read of all of it.
std::uint64_t ReadOnce(const void* data, std::size_t byteCount);

// Writes columns to one new file each in `directory`, block by block in turn as a data pass
// does; RemoveColumnFiles() removes them. Throws std::runtime_error.
std::vector<std::string> WriteColumnFiles(const std::vector<const Column*>& columns,
                                          const std::string& directory);
void ReadColumnFiles(const std::vector<std::string>& files);
void RemoveColumnFiles(const std::vector<std::string>& files);

// A CSV file with a header row, attributes x0, x1, ... and last the target "class"; attribute
// values with six significant digits.
void WriteCsv(const Columns& columns, const std::string& fileName);

// Reads a CSV file of numbers block by block and converts every field below the header with
// std::from_chars. Returns the sum of all numbers.
double ConvertCsv(const std::string& fileName);

}  // namespace bench
