#include "metadata/pass/tempfiles.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <utility>

#include "common/bincancelinfo.h"
#include "common/guard.h"
#include "common/runreport.h"
#include "common/statuscodes.h"

namespace MCBinning {

namespace {

// Whether a new file can have the name; nothing is opened, as that may block. Where the
// directory may not be searched every name is free: then the first append fails instead of the
// search going on for ever.
bool IsFreeName(const std::string& name) {
  struct stat status = {};
  return ::lstat(name.c_str(), &status) != 0;
}

}  // namespace

// Beyond a NUL the system would see nothing of a name, and find the directory itself again and
// again.
TempFiles::TempFiles(std::string directory, std::vector<std::string>& names, std::size_t count,
                     BINCancelInfo& cancel, RunReport& report)
    : fDirectory(std::move(directory)),
      fNames(names),
      fCancel(cancel),
      fReport(report),
      fNameCounter(static_cast<unsigned long>(std::clock())) {
  if (fDirectory.find('\0') != std::string::npos) throw StatusError(StatusCode::kTempFileFailed);
  for (std::size_t file = 0; file < count; ++file) {
    fNames[file] = SeekFreeName();
    fFiles.emplace_back(fNames[file]);
  }
}

// The counter moves past each name that is given out, so no two files of a run start on the
// same one.
std::string TempFiles::SeekFreeName() {
  char digits[2 * sizeof(unsigned long) + 1];
  for (;;) {
    std::snprintf(digits, sizeof digits, "%lx", fNameCounter++);
    std::string candidate = fDirectory + digits;
    if (IsFreeName(candidate)) return candidate;
    if (fCancel.IsCancel()) throw StatusError(StatusCode::kCancelled);
  }
}

void TempFiles::Append(std::size_t file, const double* values, std::size_t count) {
  for (;;) {
    errno = 0;
    switch (fFiles[file].Append(values, count)) {
      case TempFile::AppendResult::kOk:
        return;
      case TempFile::AppendResult::kFailed:
        NoteFailed(file);
        throw StatusError(StatusCode::kTempFileFailed);
      case TempFile::AppendResult::kNameTaken:
        break;
    }
    if (fCancel.IsCancel()) throw StatusError(StatusCode::kCancelled);
    fNames[file] = SeekFreeName();
    fFiles[file].SetName(fNames[file]);
  }
}

std::unique_ptr<BinaryRecordIterator> TempFiles::OpenWhole(std::size_t file,
                                                           std::uint64_t valueCount) const {
  errno = 0;
  return fFiles[file].OpenWhole(valueCount);
}

bool TempFiles::IsWhole(std::size_t file, int descriptor, std::uint64_t valueCount) const {
  if (descriptor < 0) return false;
  errno = 0;
  return fFiles[file].IsWhole(descriptor, valueCount);
}

// What failed first tells why: a file that could not be written cannot be read either.
void TempFiles::NoteFailed(std::size_t file) const {
  const int systemError = errno;
  if (!fReport.tempFile.empty()) return;
  fReport.tempFile = fNames[file];
  fReport.systemError = systemError;
}

bool TempFiles::HasAny() const {
  return std::any_of(fFiles.begin(), fFiles.end(),
                     [](const TempFile& file) { return file.IsBegun(); });
}

}  // namespace MCBinning
