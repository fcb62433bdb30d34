#pragma once

#include <cstddef>

#include "recordsexport.h"

namespace MCCommon {

// One record of the host's data: a fixed number of doubles, addressed by position.
//
//   Layout     the number of values, then a pointer to that many contiguous doubles,
//              owned by the record. Every operation is out of line, so a host may put
//              a record library of its own under the same SONAME.
//   Values     a position without a value holds MCMV::gMissingValue. Categorical
//              values are category codes (0, 1, 2, ...), -1 for no category.
//   Copies     are deep.
//   Threads    const operations may run at the same time; nothing else may.
class MCRECORDS_API Record {
 public:
  // A record of `size` values, all 0.0. Throws std::bad_alloc.
  explicit Record(std::size_t size);

  // Throws std::bad_alloc; a record that was to be assigned to is then as it was.
  Record(const Record& other);
  Record& operator=(const Record& other);
  ~Record();

  // The number of values.
  std::size_t Size() const;

  // The value at `position`. Requires position < Size(); it is not checked.
  double operator[](std::size_t position) const;
  double& operator[](std::size_t position);

 private:
  std::size_t fSize;
  double* fValues;
};

}  // namespace MCCommon
