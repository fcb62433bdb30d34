#include "host/record.h"

#include <algorithm>
#include <utility>

namespace MCCommon {

Record::Record(std::size_t size) : fSize(size), fValues(new double[size]()) {}

Record::Record(const Record& other) : fSize(other.fSize), fValues(new double[other.fSize]) {
  std::copy_n(other.fValues, fSize, fValues);
}

Record& Record::operator=(const Record& other) {
  Record copy(other);
  std::swap(fSize, copy.fSize);
  std::swap(fValues, copy.fValues);
  return *this;
}

Record::~Record() { delete[] fValues; }

std::size_t Record::Size() const { return fSize; }

double Record::operator[](std::size_t position) const { return fValues[position]; }

double& Record::operator[](std::size_t position) { return fValues[position]; }

}  // namespace MCCommon
