#include "io/inputstream.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "io/interrupt.h"

namespace MCBin {

InputStream::InputStream(const std::string& path, const char* expected)
    : fName(path == "-" ? "standard input" : MCBinModel::PrintableText(path)) {
  fFile.Reset(path == "-" ? fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                          : open(path.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat status = {};
  if (!fFile.IsOpen() || fstat(fFile.Get(), &status) != 0) {
    throw MCBinModel::Refusal(fmt::format("{}: cannot open it: {}", fName, std::strerror(errno)));
  }
  if (S_ISDIR(status.st_mode)) {
    throw MCBinModel::Refusal(fmt::format("{}: this is a directory; give {}", fName, expected));
  }
  fIsRegularFile = S_ISREG(status.st_mode) && lseek(fFile.Get(), 0, SEEK_CUR) == 0;
  if (fIsRegularFile) fSize = static_cast<std::uint64_t>(status.st_size);
}

// Waits in short steps: a signal that comes just before a wait would not end that wait.
void InputStream::WaitForInput(int file) {
  constexpr int kStepMilliseconds = 200;
  pollfd input = {file, POLLIN, 0};
  for (;;) {
    Interrupt::ThrowIfRequested();
    const int ready = poll(&input, 1, kStepMilliseconds);
    const bool failed = ready < 0 && errno != EINTR;  // the read will tell why
    if (ready > 0 || failed) return;
  }
}

}  // namespace MCBin
