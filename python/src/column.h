#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "decimal.h"

namespace MCBinPython {

// How the values of a column are stored.
enum class Storage {
  kNull,  // there are none
  kBit,
  kInt8,
  kInt16,
  kInt32,
  kInt64,
  kUInt8,
  kUInt16,
  kUInt32,
  kUInt64,
  kFloat16,
  kFloat32,
  kFloat64,
  kDecimal,
  kText32,     // between offsets of 32 bits
  kText64,     // of 64 bits
  kTextView,   // Arrow's string views
  kTextCells,  // a std::string_view each
  kOther,      // something that cannot be binned
};

// What the whole numbers of moments count from 1970 on.
enum class TimeUnit { kNone, kDays, kSeconds, kMilliseconds, kMicroseconds, kNanoseconds };

// Texts or numbers with a bit for each that says whether it is there.
struct Cells {
  std::vector<double> numbers;
  std::vector<std::string_view> texts;
  std::vector<std::uint8_t> validity;  // as in Arrow

  bool IsValid(std::size_t index) const { return ((validity[index / 8] >> (index % 8)) & 1) != 0; }
};

// A piece of a column, where it lies in the memory of whoever made it.
struct Chunk {
  std::size_t length = 0;
  std::size_t first = 0;                     // where it begins in the buffers, in values
  const std::uint8_t* validity = nullptr;    // as in Arrow; null when all values are there
  const char* values = nullptr;              // numbers, offsets or views
  std::ptrdiff_t stride = 0;                 // bytes from one value to the next; not of bits
  const char* texts = nullptr;               // what offsets point into
  const void* const* textBuffers = nullptr;  // what views point into
  std::shared_ptr<const Cells> dictionary;   // what values are indexes of, if they are

  bool IsValid(std::size_t index) const {
    const std::size_t bit = first + index;
    return validity == nullptr || ((validity[bit / 8] >> (bit % 8)) & 1) != 0;
  }
  const char* At(std::size_t index) const {
    return values + static_cast<std::ptrdiff_t>(first + index) * stride;
  }
};

// A column of a table: chunks one after the other. Who holds the table keeps the memory.
struct Column {
  std::string name;
  Storage storage = Storage::kOther;
  std::string type;                 // in words, for messages
  bool isDictionary = false;        // values are indexes
  bool isOrdered = false;           // the order of the dictionary means something
  bool isText = false;              // of the dictionary, where there is one
  bool lowestIsMissing = false;     // of 64-bit integers, as in NumPy's times
  TimeUnit unit = TimeUnit::kNone;  // of moments, which are read as seconds, as doubles have them
  DecimalFormat decimal;            // of kDecimal
  std::vector<Chunk> chunks;
  std::size_t length = 0;

  bool IsTime() const { return unit != TimeUnit::kNone; }

  // Adds a piece.
  void Add(Chunk chunk) {
    length += chunk.length;
    chunks.push_back(std::move(chunk));
  }

  // The numbers of the records [first, first + count); MCMV::Missing() where there is none. Those
  // of moments are the nearest doubles to seconds since 1970. Requires numbers. Any number of
  // threads may read.
  void ReadNumbers(std::size_t first, std::size_t count, double* numbers) const;
};

}  // namespace MCBinPython
