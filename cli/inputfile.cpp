#include "cli/inputfile.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <vector>

#include "cli/displaytext.h"
#include "cli/inputerror.h"
#include "cli/interrupt.h"
#include "cli/writeall.h"

namespace MCBin {

namespace {

// Waits in short steps: a signal that comes just before a read would not end that read.
void WaitForInput(int file) {
  constexpr int kStepMilliseconds = 200;
  pollfd input = {file, POLLIN, 0};
  do {
    Interrupt::ThrowIfRequested();
  } while (poll(&input, 1, kStepMilliseconds) == 0);
}

}  // namespace

InputFile::InputFile(const std::string& path, const std::string& privateDirectory)
    : fName(path == "-" ? "standard input" : PrintableText(path)) {
  fFile.Reset(path == "-" ? fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                          : open(path.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat status = {};
  if (!fFile.IsOpen() || fstat(fFile.Get(), &status) != 0) {
    throw InputError(fmt::format("{}: cannot open it: {}", fName, std::strerror(errno)));
  }
  if (S_ISDIR(status.st_mode)) {
    throw InputError(fmt::format("{}: this is a directory; give a CSV file", fName));
  }
  const bool canReadTwice = S_ISREG(status.st_mode) && lseek(fFile.Get(), 0, SEEK_CUR) == 0;
  if (canReadTwice) {
    fSize = static_cast<std::uint64_t>(status.st_size);
  } else {
    CopyPipe(privateDirectory);
  }
  if (fSize == 0) {
    throw InputError(
        fmt::format("{}: the file is empty; a header row and records are expected", fName));
  }
}

void InputFile::CopyPipe(const std::string& privateDirectory) {
  const std::string path = privateDirectory + "/input.csv";
  FileDescriptor copy(open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  const auto refuse = [&] {
    throw InputError(
        fmt::format("{}: cannot copy it to {}: {}; choose another directory with "
                    "--temp-dir",
                    fName, QuotedText(privateDirectory), std::strerror(errno)));
  };
  if (!copy.IsOpen()) refuse();
  std::vector<char> chunk(std::size_t{1} << 20);
  for (;;) {
    WaitForInput(fFile.Get());
    const ssize_t got = read(fFile.Get(), chunk.data(), chunk.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) throw InputError(fmt::format("{}: cannot read: {}", fName, std::strerror(errno)));
    if (got == 0) break;
    const auto bytes = static_cast<std::size_t>(got);
    if (!WriteAll(copy.Get(), {chunk.data(), bytes})) refuse();
    fSize += bytes;
  }
  if (lseek(copy.Get(), 0, SEEK_SET) != 0) refuse();
  fFile.Reset(copy.Release());
}

}  // namespace MCBin
