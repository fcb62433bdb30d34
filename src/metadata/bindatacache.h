#pragma once

#include <cstddef>
#include <memory>
#include <ostream>
#include <vector>

#include "../common/export.h"

// A fixed-size, row-major matrix of doubles with a fill count per row: the write buffer of
// the data pass, a row per temporary file.
//
//   Positions   those out of range are answered by false, null, 0 or the system-missing value.
//   Memory      of a large cache, what no value was ever stored in is address space alone. A copy
//               is deep, and takes up all of it.
class MCBINNING_API BINDataCache {
 public:
  // Whether some row is full.
  enum CacheStatus { CacheNotFull = 0, CacheFull = 2 };

  // No rows, no columns.
  BINDataCache();

  // All zeros, every row empty; no rows and no columns where Resize() would refuse.
  BINDataCache(int rows, int cols);

  // Throw std::bad_alloc; a cache that was to be assigned to is then as it was.
  BINDataCache(const BINDataCache& other);
  BINDataCache& operator=(const BINDataCache& other);
  ~BINDataCache();

  // False, and nothing changed, when a dimension is negative or memory runs out. Values do
  // not keep their position: Flush() before filling the rows anew.
  bool Resize(int rows, int cols);

  // Flush() and Resize() set it back; storing a status changes no values.
  CacheStatus GetStatus() const { return fStatus; }
  void SetStatus(CacheStatus status) { fStatus = status; }

  // True when some row is full: the cache is ready to be written out.
  bool IsAvailable() { return fStatus == CacheFull; }

  // The dimensions.
  int GetNRows() const { return fRows; }
  int GetNCols() const { return fCols; }

  // One value, whatever the fill count of its row, which stays as it is.
  double GetElem(int row, int col) const;
  bool SetElem(int row, int col, double value);

  // Appends to the row; refused when it is full already: flush once IsAvailable().
  bool AddElem(int row, double value);

  // Makes the first elements of the row, written through a pointer, the appended ones. Refused
  // when there is no such row or it has not as many. A status that says full stays until Flush().
  bool SetRowSize(int row, int size);

  // Whole rows and columns, whatever their fill count. The getters resize `out`, for which they
  // may throw std::bad_alloc; the setters refuse a vector of another length.
  bool GetRow(int row, std::vector<double>& out) const;
  bool SetRow(int row, const std::vector<double>& in);
  bool GetCol(int col, std::vector<double>& out) const;
  bool SetCol(int col, const std::vector<double>& in);

  // The first element of a row, or of a column, whose elements lie GetNCols() apart.
  double* GetRowPtr(int row);
  const double* GetRowPtr(int row) const;
  double* GetColPtr(int col);

  // How many values were appended to the row since the last Flush().
  int GetRowSize(int row) const;

  // Empties every row. The values stay readable.
  void Flush();

  // Writes a readable dump, in the stream's own formatting.
  std::ostream& Display(std::ostream& os) const;

 private:
  bool HasRow(int row) const { return row >= 0 && row < fRows; }
  bool HasCol(int col) const { return col >= 0 && col < fCols; }
  std::size_t Position(int row, int col) const;
  std::size_t GetSize() const;

  // Memory of calloc().
  struct Free {
    void operator()(double* data) const;
  };
  using Data = std::unique_ptr<double[], Free>;

  static Data MakeData(std::size_t size);

  CacheStatus fStatus;
  int fRows;
  int fCols;
  Data fData;
  std::vector<int> fRowSizes;
};
