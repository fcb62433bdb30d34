#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "metadata/bindatacache.h"
#include "metadata/pass/tempfiles.h"

namespace MCBinning {

// Where a prepared record goes: the values by file position, `stride` apart.
struct RecordSlots {
  double& operator[](std::size_t file) const { return first[file * stride]; }

  double* first;
  std::size_t stride;
};

// Gathers records in a cache, a row for each file, until they are appended to the files.
class RecordBuffer {
 public:
  // The cache stays the caller's; records are stored once it was sized.
  RecordBuffer(BINDataCache& cache, std::size_t fileCount);

  // Sizes the cache to so many rows and makes it empty. Throws std::bad_alloc.
  void Size(int rows, int columns);

  // Gives the cache's memory back.
  void Release();

  // Where the next record goes. Requires that the buffer is not full.
  RecordSlots GetNextSlots() const {
    return {fFirstSlot + fNextColumn, static_cast<std::size_t>(fCache.GetNCols())};
  }

  // Keeps the records that were written to the next slots, one after the other.
  void Store(std::size_t count) {
    if (!fOpenFiles.empty()) fNextColumn += static_cast<int>(count);
  }

  // How many records it takes until it is full.
  std::size_t GetRoom() const { return static_cast<std::size_t>(fCache.GetNCols() - fNextColumn); }

  bool IsFull() const { return fNextColumn == fCache.GetNCols(); }

  // Whether it is empty, and full with so many records.
  bool IsFilledBy(std::size_t count) const {
    return fNextColumn == 0 && count == GetRoom() && !fOpenFiles.empty();
  }

  // The file takes no more values.
  void Close(std::size_t file);

  // Appends what is there to the files, and is empty then. Throws StatusError and std::bad_alloc.
  void Transfer(TempFiles& files);

  // Appends as many values to each open file as the empty buffer has room for. `prepare` makes a
  // file's values when its turn has come, and answers where they are. Throws the same.
  void Transfer(TempFiles& files, const std::function<const double*(std::size_t file)>& prepare);

 private:
  BINDataCache& fCache;
  double* fFirstSlot = nullptr;
  int fNextColumn = 0;
  std::vector<std::size_t> fOpenFiles;  // positions of the files that still take values
};

}  // namespace MCBinning
