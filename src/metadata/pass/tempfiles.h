#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "metadata/binaryrecorditerator.h"
#include "metadata/pass/tempfile.h"

class BINCancelInfo;

namespace MCBinning {

struct RunReport;

// The temporary files of a data pass, known by their positions; removed with this object.
class TempFiles {
 public:
  // Gives the first `count` of the names each a name that is free in the directory; the names,
  // `cancel` and `report` stay the caller's, and an append that fails is noted in the report.
  // Throws StatusError (1 when cancelled while a name is sought, 120021 for a directory whose name
  // no file's can begin with) and std::bad_alloc.
  TempFiles(std::string directory, std::vector<std::string>& names, std::size_t count,
            BINCancelInfo& cancel, RunReport& report);

  std::size_t GetCount() const { return fFiles.size(); }

  // Appends values; a file whose name someone else took before its first ones takes the next free
  // one. Throws StatusError (120021, or 1 when cancelled) and std::bad_alloc.
  void Append(std::size_t file, const double* values, std::size_t count);

  // Whether any file was made.
  bool HasAny() const;

  // See TempFile. What fails is not noted: only the caller knows whether the file is to be short.
  // A descriptor of -1 is that of a file that could not be opened; errno says why.
  std::unique_ptr<BinaryRecordIterator> OpenWhole(std::size_t file, std::uint64_t valueCount) const;
  bool IsWhole(std::size_t file, int descriptor, std::uint64_t valueCount) const;

  // Notes the file and the system's error (errno) in the report, unless it has one already.
  void NoteFailed(std::size_t file) const;

 private:
  std::string SeekFreeName();

  const std::string fDirectory;
  std::vector<std::string>& fNames;
  BINCancelInfo& fCancel;
  RunReport& fReport;
  std::vector<TempFile> fFiles;
  unsigned long fNameCounter;
};

}  // namespace MCBinning
