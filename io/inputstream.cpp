#include "io/inputstream.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string_view>
#include <vector>

#include "binmodel/model/refusal.h"
#include "io/interrupt.h"
#include "io/pathtext.h"

namespace MCBin {

namespace {

constexpr std::size_t kMostBytes = std::size_t{256} << 20;
constexpr std::size_t kChunkBytes = std::size_t{1} << 16;

// What comes first; '\0' when there are nothing but blanks.
char FirstCharacter(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
    text.remove_prefix(kByteOrderMark.size());
  }
  const std::size_t at = text.find_first_not_of(" \t\r\n");
  return at == std::string_view::npos ? '\0' : text[at];
}

[[noreturn]] void RefuseToRead(const std::string& name, const char* what, int error) {
  throw MCBinModel::Refusal(MCBinModel::RefusalCode::kUnreadable, {name, {}, std::strerror(error)},
                            fmt::format("{}: {}", what, std::strerror(error)));
}

}  // namespace

InputStream::InputStream(const std::string& path, const char* expected)
    : fName(path == "-" ? "standard input" : PathText(path)) {
  do {  // a named pipe that nobody writes to is waited for
    Interrupt::ThrowIfRequested();
    fFile.Reset(path == "-" ? fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                            : open(path.c_str(), O_RDONLY | O_CLOEXEC));
  } while (!fFile.IsOpen() && errno == EINTR);
  struct stat status = {};
  if (!fFile.IsOpen() || fstat(fFile.Get(), &status) != 0) {
    RefuseToRead(fName, "cannot open it", errno);
  }
  if (S_ISDIR(status.st_mode)) {
    throw MCBinModel::Refusal(MCBinModel::RefusalCode::kNotAFile, {fName, {}, {}},
                              fmt::format("this is a directory; give {}", expected));
  }
  fIsRegularFile = S_ISREG(status.st_mode) && lseek(fFile.Get(), 0, SEEK_CUR) == 0;
  if (fIsRegularFile) fSize = static_cast<std::uint64_t>(status.st_size);
}

std::size_t InputStream::Read(int file, const std::string& name, char* to, std::size_t room) {
  ssize_t got = -1;
  do {
    Interrupt::WaitFor(file, POLLIN);
    got = read(file, to, room);
  } while (got < 0 && (errno == EINTR || errno == EAGAIN));
  if (got < 0) RefuseToRead(name, "cannot read", errno);
  return static_cast<std::size_t>(got);
}

InputText ReadAll(const std::string& path, char first, const char* expected) {
  const InputStream input(path, expected);
  InputText all{input.GetName(), {}};
  std::vector<char> chunk(kChunkBytes);
  for (;;) {
    const std::size_t got = InputStream::Read(input.Get(), all.name, chunk.data(), chunk.size());
    const bool atEnd = got == 0;
    const bool isFirstChunk = all.text.empty();
    all.text.append(chunk.data(), got);
    if ((atEnd || isFirstChunk) && FirstCharacter(all.text) != first) {
      throw MCBinModel::Refusal(MCBinModel::RefusalCode::kWrongFile, {all.name, {}, expected},
                                fmt::format("this is not {}", expected));
    }
    if (atEnd) return all;
    if (all.text.size() > kMostBytes) {
      throw MCBinModel::Refusal(
          MCBinModel::RefusalCode::kWrongFile, {all.name, {}, expected},
          fmt::format("larger than {} MiB; give {}", kMostBytes >> 20, expected));
    }
  }
}

}  // namespace MCBin
