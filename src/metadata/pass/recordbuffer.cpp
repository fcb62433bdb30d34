#include "metadata/pass/recordbuffer.h"

#include <algorithm>
#include <new>
#include <numeric>

namespace MCBinning {

RecordBuffer::RecordBuffer(BINDataCache& cache, std::size_t fileCount)
    : fCache(cache), fOpenFiles(fileCount) {
  std::iota(fOpenFiles.begin(), fOpenFiles.end(), std::size_t{0});
}

void RecordBuffer::Size(int rows, int columns) {
  if (!fCache.Resize(rows, columns)) throw std::bad_alloc();
  fCache.Flush();
  fFirstSlot = fCache.GetRowPtr(0);
  fNextColumn = 0;
}

void RecordBuffer::Release() {
  fCache = BINDataCache();
  fFirstSlot = nullptr;
  fNextColumn = 0;
}

void RecordBuffer::Close(std::size_t file) {
  std::erase(fOpenFiles, file);
  fCache.SetRowSize(static_cast<int>(file), fNextColumn);
}

void RecordBuffer::Transfer(TempFiles& files) {
  for (const std::size_t file : fOpenFiles) fCache.SetRowSize(static_cast<int>(file), fNextColumn);
  for (std::size_t file = 0; file < files.GetCount(); ++file) {
    const int row = static_cast<int>(file);
    files.Append(file, fCache.GetRowPtr(row), static_cast<std::size_t>(fCache.GetRowSize(row)));
  }
  fCache.Flush();
  fNextColumn = 0;
}

void RecordBuffer::Transfer(TempFiles& files,
                            const std::function<const double*(std::size_t)>& prepare) {
  const std::size_t room = GetRoom();
  for (std::size_t file = 0; file < files.GetCount(); ++file) {
    const double* const values = prepare(file);
    const bool isOpen = std::find(fOpenFiles.begin(), fOpenFiles.end(), file) != fOpenFiles.end();
    files.Append(file, values, isOpen ? room : 0);
  }
}

}  // namespace MCBinning
