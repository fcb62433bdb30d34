// The three names by which mcbinning knows records, as this host gives them meaning: the classes
// keep the layout that the headers state, all else is the host's.

#include <mcbinning/host/missingvalue.h>
#include <mcbinning/host/record.h>
#include <mcbinning/host/recorditerator.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <utility>

namespace {

// On a cache line of its own.
double* NewValues(std::size_t count) {
  constexpr std::size_t kLine = 64;
  const std::size_t bytes = count * sizeof(double);
  void* const values = std::aligned_alloc(kLine, (bytes / kLine + 1) * kLine);
  if (values == nullptr) throw std::bad_alloc();
  return static_cast<double*>(values);
}

}  // namespace

// What stands for "no value" in this host's data.
double MCMV::gMissingValue = -99999.0;

namespace MCCommon {

Record::Record(std::size_t size) : fSize(size), fValues(NewValues(size)) {
  std::fill_n(fValues, size, 0.0);
}

Record::Record(const Record& other) : fSize(other.fSize), fValues(NewValues(other.fSize)) {
  std::copy_n(other.fValues, fSize, fValues);
}

Record& Record::operator=(const Record& other) {
  Record copy(other);
  std::swap(fSize, copy.fSize);
  std::swap(fValues, copy.fValues);
  return *this;
}

Record::~Record() { std::free(fValues); }

std::size_t Record::Size() const { return fSize; }

double Record::operator[](std::size_t position) const { return fValues[position]; }

double& Record::operator[](std::size_t position) { return fValues[position]; }

RecordIterator::~RecordIterator() = default;

}  // namespace MCCommon
