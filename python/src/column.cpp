#include "column.h"

#include <mcbinning/common/missing.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <stdexcept>

#include "cells.h"

namespace MCBinPython {

namespace {

template <typename Number>
Number Load(const char* place) {
  Number number;
  std::memcpy(&number, place, sizeof(Number));
  return number;
}

double LoadHalf(const char* place) {
  const auto bits = Load<std::uint16_t>(place);
  const int exponent = (bits >> 10) & 31;
  const int fraction = bits & 1023;
  const double size = exponent == 0    ? std::ldexp(fraction, -24)
                      : exponent == 31 ? (fraction == 0 ? HUGE_VAL : std::nan(""))
                                       : std::ldexp(fraction + 1024, exponent - 25);
  return (bits & 0x8000) != 0 ? -size : size;
}

// Numbers of a chunk from `from` on, each taken by `load` from its place.
template <typename LoadNumber>
void ReadChunk(const Chunk& chunk, std::size_t from, std::size_t count, const LoadNumber& load,
               double* numbers) {
  if (chunk.validity == nullptr) {
    for (std::size_t i = 0; i < count; ++i) numbers[i] = load(chunk.At(from + i));
    return;
  }
  for (std::size_t i = 0; i < count; ++i) {
    numbers[i] = chunk.IsValid(from + i) ? load(chunk.At(from + i)) : MCMV::Missing();
  }
}

template <typename Number>
void ReadPlain(const Chunk& chunk, std::size_t from, std::size_t count, double* numbers) {
  const auto load = [](const char* place) { return static_cast<double>(Load<Number>(place)); };
  if (chunk.validity == nullptr && chunk.stride == sizeof(Number)) {  // several values at a time
    const char* const values = chunk.At(from);
    for (std::size_t i = 0; i < count; ++i) numbers[i] = load(values + i * sizeof(Number));
    return;
  }
  ReadChunk(chunk, from, count, load, numbers);
}

void ReadBits(const Chunk& chunk, std::size_t from, std::size_t count, double* numbers) {
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t bit = chunk.first + from + i;
    const auto byte = static_cast<unsigned char>(chunk.values[bit / 8]);
    numbers[i] = chunk.IsValid(from + i) ? (byte >> (bit % 8)) & 1 : MCMV::Missing();
  }
}

// The double that is nearest to a quotient, also of numbers that no double is.
double Divide(std::int64_t number, double divisor) {
  constexpr std::int64_t kMostExact = std::int64_t{1} << 53;
  if (-kMostExact <= number && number <= kMostExact) return static_cast<double>(number) / divisor;
  const std::int64_t low = number % 1024;
  const auto high = static_cast<double>(number - low);
  const double quotient = high / divisor;
  const double rest = std::fma(-quotient, divisor, high) + static_cast<double>(low);
  return quotient + rest / divisor;
}

double SecondsOf(std::int64_t time, TimeUnit unit) {
  switch (unit) {
    case TimeUnit::kDays:
      return static_cast<double>(time) * 86400.0;
    case TimeUnit::kMilliseconds:
      return Divide(time, 1e3);
    case TimeUnit::kMicroseconds:
      return Divide(time, 1e6);
    case TimeUnit::kNanoseconds:
      return Divide(time, 1e9);
    default:
      return static_cast<double>(time);
  }
}

template <typename Number>
void ReadMoments(const Column& column, const Chunk& chunk, std::size_t from, std::size_t count,
                 double* numbers) {
  const auto load = [&](const char* place) {
    const auto time = Load<Number>(place);
    const bool isThere = !column.lowestIsMissing || time != std::numeric_limits<Number>::min();
    return isThere ? SecondsOf(time, column.unit) : MCMV::Missing();
  };
  ReadChunk(chunk, from, count, load, numbers);
}

void ReadStored(const Column& column, const Chunk& chunk, std::size_t from, std::size_t count,
                double* numbers) {
  switch (column.storage) {
    case Storage::kNull:
      return std::fill_n(numbers, count, MCMV::Missing()), void();
    case Storage::kBit:
      return ReadBits(chunk, from, count, numbers);
    case Storage::kInt8:
      return ReadPlain<std::int8_t>(chunk, from, count, numbers);
    case Storage::kInt16:
      return ReadPlain<std::int16_t>(chunk, from, count, numbers);
    case Storage::kInt32:
      return column.IsTime() ? ReadMoments<std::int32_t>(column, chunk, from, count, numbers)
                             : ReadPlain<std::int32_t>(chunk, from, count, numbers);
    case Storage::kInt64:
      return column.IsTime() || column.lowestIsMissing
                 ? ReadMoments<std::int64_t>(column, chunk, from, count, numbers)
                 : ReadPlain<std::int64_t>(chunk, from, count, numbers);
    case Storage::kUInt8:
      return ReadPlain<std::uint8_t>(chunk, from, count, numbers);
    case Storage::kUInt16:
      return ReadPlain<std::uint16_t>(chunk, from, count, numbers);
    case Storage::kUInt32:
      return ReadPlain<std::uint32_t>(chunk, from, count, numbers);
    case Storage::kUInt64:
      return ReadPlain<std::uint64_t>(chunk, from, count, numbers);
    case Storage::kFloat16:
      return ReadChunk(chunk, from, count, LoadHalf, numbers);
    case Storage::kFloat32:
      return ReadPlain<float>(chunk, from, count, numbers);
    case Storage::kFloat64:
      return ReadPlain<double>(chunk, from, count, numbers);
    case Storage::kDecimal:
      return ReadChunk(
          chunk, from, count, [&](const char* place) { return ReadDecimal(place, column.decimal); },
          numbers);
    default:
      throw std::logic_error("column of texts read as numbers");
  }
}

void LookUp(const Chunk& chunk, std::size_t count, double* numbers) {
  for (std::size_t i = 0; i < count; ++i) {
    const auto found = FindInDictionary(*chunk.dictionary, numbers[i]);
    numbers[i] = found ? chunk.dictionary->numbers[*found] : MCMV::Missing();
  }
}

}  // namespace

void Column::ReadNumbers(std::size_t first, std::size_t count, double* numbers) const {
  std::size_t begin = 0;  // of the chunk
  for (const Chunk& chunk : chunks) {
    if (count == 0) return;
    const std::size_t end = begin + chunk.length;
    if (first < end) {
      const std::size_t here = std::min(count, end - first);
      ReadStored(*this, chunk, first - begin, here, numbers);
      if (isDictionary && !isText) LookUp(chunk, here, numbers);
      first += here;
      count -= here;
      numbers += here;
    }
    begin = end;
  }
}

}  // namespace MCBinPython
