#include "io/outputfile.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "io/writeall.h"

namespace MCBin {

namespace fs = std::filesystem;

OutputFile::OutputFile(const std::string& path) : fPath(path) {
  std::error_code ignored;
  const fs::file_status status = fs::status(path, ignored);
  if (fs::is_directory(status)) {
    throw MCBinModel::Refusal(
        fmt::format("{}: this is a directory; give a file name", MCBinModel::QuotedText(path)));
  }
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    fFile.Reset(open(path.c_str(), O_WRONLY | O_CLOEXEC));
    if (!fFile.IsOpen()) Fail("cannot open it");
    return;
  }
  if (fs::exists(status)) fPath = fs::canonical(path, ignored).string();

  const fs::path target(fPath);
  const std::string name = fmt::format(".{}.{}.tmp", target.filename().string(), getpid());
  const std::string temporary = (target.parent_path() / name).string();
  fFile.Reset(open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  if (!fFile.IsOpen()) Fail("cannot write it");
  fTemporaryPath = temporary;
  // As private as the file that it replaces.
  if (fs::exists(status)) fchmod(fFile.Get(), static_cast<mode_t>(status.permissions()));
}

OutputFile::~OutputFile() {
  if (!fTemporaryPath.empty()) unlink(fTemporaryPath.c_str());
}

void OutputFile::Fail(const char* what) const {
  throw MCBinModel::Refusal(
      fmt::format("{}: {}: {}", MCBinModel::PrintableText(fPath), what, std::strerror(errno)));
}

void OutputFile::Write(std::string_view text) {
  if (!WriteAll(fFile.Get(), text)) Fail("cannot write it");
}

void OutputFile::Commit() {
  if (!fFile.Close()) Fail("cannot write it");
  if (fTemporaryPath.empty()) return;
  if (std::rename(fTemporaryPath.c_str(), fPath.c_str()) != 0) Fail("cannot rename the new file");
  fTemporaryPath.clear();
}

}  // namespace MCBin
