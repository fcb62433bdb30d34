#include "metadata/bindatacache.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <limits>
#include <memory>
#include <new>
#include <utility>

#include "common/displayframe.h"
#include "common/missing.h"

namespace {

// Of a cache beyond this many bytes, memory comes in small pages only: a large one would reach over
// many rows, of which few values may ever be stored.
constexpr std::size_t kSmallPagesFrom = std::size_t{32} << 20;

// From the first whole page on.
void UseSmallPages(double* data, std::size_t byteCount) {
  const auto pageSize = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  void* first = data;
  if (std::align(pageSize, pageSize, first, byteCount) == nullptr) return;
  ::madvise(first, byteCount / pageSize * pageSize, MADV_NOHUGEPAGE);
}

}  // namespace

void BINDataCache::Free::operator()(double* data) const { std::free(data); }

BINDataCache::BINDataCache() : fStatus(CacheNotFull), fRows(0), fCols(0) {}

BINDataCache::BINDataCache(int rows, int cols) : BINDataCache() { Resize(rows, cols); }

BINDataCache::BINDataCache(const BINDataCache& other)
    : fStatus(other.fStatus),
      fRows(other.fRows),
      fCols(other.fCols),
      fData(MakeData(other.GetSize())),
      fRowSizes(other.fRowSizes) {
  std::copy_n(other.fData.get(), GetSize(), fData.get());
}

BINDataCache& BINDataCache::operator=(const BINDataCache& other) {
  if (this == &other) return *this;
  BINDataCache copy(other);
  fStatus = copy.fStatus;
  fRows = copy.fRows;
  fCols = copy.fCols;
  fData.swap(copy.fData);
  fRowSizes.swap(copy.fRowSizes);
  return *this;
}

BINDataCache::~BINDataCache() = default;

// Zeros that are not written: large ones are pages that the system makes when they are touched.
BINDataCache::Data BINDataCache::MakeData(std::size_t size) {
  if (size > std::numeric_limits<std::ptrdiff_t>::max() / sizeof(double)) throw std::bad_alloc();
  Data data(static_cast<double*>(std::calloc(std::max<std::size_t>(size, 1), sizeof(double))));
  if (!data) throw std::bad_alloc();
  if (size * sizeof(double) >= kSmallPagesFrom) UseSmallPages(data.get(), size * sizeof(double));
  return data;
}

std::size_t BINDataCache::GetSize() const { return Position(fRows, 0); }

std::size_t BINDataCache::Position(int row, int col) const {
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(fCols) +
         static_cast<std::size_t>(col);
}

bool BINDataCache::Resize(int rows, int cols) {
  if (rows < 0 || cols < 0) return false;
  const auto rowCount = static_cast<std::size_t>(rows);
  const std::size_t size = rowCount * static_cast<std::size_t>(cols);
  try {
    fRowSizes.reserve(rowCount);
    if (size != GetSize()) {
      Data data = MakeData(size);
      std::copy_n(fData.get(), std::min(size, GetSize()), data.get());
      fData = std::move(data);
    }
    fRowSizes.resize(rowCount);
  } catch (const std::exception&) {  // bad_alloc, or length_error for an absurd size
    return false;
  }
  fStatus = CacheNotFull;
  fRows = rows;
  fCols = cols;
  return true;
}

double BINDataCache::GetElem(int row, int col) const {
  return HasRow(row) && HasCol(col) ? fData[Position(row, col)] : MCMV::Missing();
}

bool BINDataCache::SetElem(int row, int col, double value) {
  if (!HasRow(row) || !HasCol(col)) return false;
  fData[Position(row, col)] = value;
  return true;
}

bool BINDataCache::AddElem(int row, double value) {
  if (!HasRow(row) || GetRowSize(row) >= fCols) return false;
  int& rowSize = fRowSizes[static_cast<std::size_t>(row)];
  fData[Position(row, rowSize)] = value;
  if (++rowSize == fCols) fStatus = CacheFull;
  return true;
}

bool BINDataCache::SetRowSize(int row, int size) {
  if (!HasRow(row) || size < 0 || size > fCols) return false;
  fRowSizes[static_cast<std::size_t>(row)] = size;
  if (size == fCols) fStatus = CacheFull;
  return true;
}

bool BINDataCache::GetRow(int row, std::vector<double>& out) const {
  if (!HasRow(row)) return false;
  const double* const first = GetRowPtr(row);
  out.assign(first, first + fCols);
  return true;
}

bool BINDataCache::SetRow(int row, const std::vector<double>& in) {
  if (!HasRow(row) || in.size() != static_cast<std::size_t>(fCols)) return false;
  std::copy(in.begin(), in.end(), GetRowPtr(row));
  return true;
}

bool BINDataCache::GetCol(int col, std::vector<double>& out) const {
  if (!HasCol(col)) return false;
  out.resize(static_cast<std::size_t>(fRows));
  for (int row = 0; row < fRows; ++row) {
    out[static_cast<std::size_t>(row)] = fData[Position(row, col)];
  }
  return true;
}

bool BINDataCache::SetCol(int col, const std::vector<double>& in) {
  if (!HasCol(col) || in.size() != static_cast<std::size_t>(fRows)) return false;
  for (int row = 0; row < fRows; ++row) {
    fData[Position(row, col)] = in[static_cast<std::size_t>(row)];
  }
  return true;
}

double* BINDataCache::GetRowPtr(int row) {
  return HasRow(row) ? fData.get() + Position(row, 0) : nullptr;
}

const double* BINDataCache::GetRowPtr(int row) const {
  return HasRow(row) ? fData.get() + Position(row, 0) : nullptr;
}

double* BINDataCache::GetColPtr(int col) {
  return HasCol(col) && fRows > 0 ? fData.get() + Position(0, col) : nullptr;
}

int BINDataCache::GetRowSize(int row) const {
  return HasRow(row) ? fRowSizes[static_cast<std::size_t>(row)] : 0;
}

void BINDataCache::Flush() {
  std::fill(fRowSizes.begin(), fRowSizes.end(), 0);
  fStatus = CacheNotFull;
}

std::ostream& BINDataCache::Display(std::ostream& os) const {
  MCBinning::DisplayStart(os, "BINDataCache");
  os << "Status = " << fStatus << '\n'
     << "Number of rows = " << fRows << '\n'
     << "Number of columns = " << fCols << '\n'
     << "Row sizes =";
  for (const int size : fRowSizes) os << ' ' << size;
  return MCBinning::DisplayEnd(os << '\n', "BINDataCache");
}
