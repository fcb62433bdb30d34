#include "cli/inputfile.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <vector>

#include "cli/displaytext.h"
#include "cli/inputerror.h"
#include "cli/writeall.h"

namespace MCBin {

InputFile::InputFile(const std::string& path, const std::string& privateDirectory)
    : fInput(path, "a CSV file"), fFile(fInput.Get()), fSize(fInput.GetSize()) {
  if (!fInput.IsRegularFile()) CopyPipe(privateDirectory);
  if (fSize == 0) {
    throw InputError(
        fmt::format("{}: the file is empty; a header row and records are expected", GetName()));
  }
}

void InputFile::CopyPipe(const std::string& privateDirectory) {
  const std::string path = privateDirectory + "/input.csv";
  FileDescriptor copy(open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  const auto refuse = [&] {
    throw InputError(
        fmt::format("{}: cannot copy it to {}: {}; choose another directory with "
                    "--temp-dir",
                    GetName(), QuotedText(privateDirectory), std::strerror(errno)));
  };
  if (!copy.IsOpen()) refuse();
  std::vector<char> chunk(std::size_t{1} << 20);
  for (;;) {
    InputStream::WaitForInput(fInput.Get());
    const ssize_t got = read(fInput.Get(), chunk.data(), chunk.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0)
      throw InputError(fmt::format("{}: cannot read: {}", GetName(), std::strerror(errno)));
    if (got == 0) break;
    const auto bytes = static_cast<std::size_t>(got);
    if (!WriteAll(copy.Get(), {chunk.data(), bytes})) refuse();
    fSize += bytes;
  }
  if (lseek(copy.Get(), 0, SEEK_SET) != 0) refuse();
  fCopy.Reset(copy.Release());
  fFile = fCopy.Get();
}

}  // namespace MCBin
