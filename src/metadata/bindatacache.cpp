#include "metadata/bindatacache.h"

#include <algorithm>
#include <cstddef>
#include <exception>

#include "common/displayframe.h"
#include "common/missing.h"

BINDataCache::BINDataCache() : fStatus(CacheNotFull), fRows(0), fCols(0) {}

BINDataCache::BINDataCache(int rows, int cols) : BINDataCache() { Resize(rows, cols); }

std::size_t BINDataCache::Position(int row, int col) const {
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(fCols) +
         static_cast<std::size_t>(col);
}

bool BINDataCache::Resize(int rows, int cols) {
  if (rows < 0 || cols < 0) return false;
  try {
    const auto rowCount = static_cast<std::size_t>(rows);
    fRowSizes.reserve(rowCount);
    fData.resize(rowCount * static_cast<std::size_t>(cols));
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
  return HasRow(row) ? fData.data() + Position(row, 0) : nullptr;
}

const double* BINDataCache::GetRowPtr(int row) const {
  return HasRow(row) ? fData.data() + Position(row, 0) : nullptr;
}

double* BINDataCache::GetColPtr(int col) {
  return HasCol(col) && fRows > 0 ? fData.data() + Position(0, col) : nullptr;
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
