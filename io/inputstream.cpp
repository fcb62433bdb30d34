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

ssize_t InputStream::Read(int file, char* to, std::size_t room) {
  ssize_t got = -1;
  do {
    Interrupt::WaitFor(file, POLLIN);
    got = read(file, to, room);
  } while (got < 0 && (errno == EINTR || errno == EAGAIN));
  return got;
}

}  // namespace MCBin
