#include "cli/terminal/resultstream.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "binmodel/model/refusal.h"
#include "io/writeall.h"

namespace MCBin {

namespace {

constexpr std::size_t kBlockBytes = std::size_t{1} << 16;
constexpr int kFirstOwnDescriptor = 3;

}  // namespace

ResultStream::ResultStream() : fOutput(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, kFirstOwnDescriptor)) {
  // A standard descriptor that is closed is taken, so that no other file becomes it.
  int number = open("/dev/null", O_RDWR);
  while (number >= 0 && number < kFirstOwnDescriptor) number = open("/dev/null", O_RDWR);
  if (number >= 0) close(number);
  dup2(STDERR_FILENO, STDOUT_FILENO);
}

ResultStream::~ResultStream() {
  if (fOutput.IsOpen()) dup2(fOutput.Get(), STDOUT_FILENO);
}

void ResultStream::Write(std::string_view text) {
  fPending += text;
  if (fPending.size() >= kBlockBytes) Flush();
}

void ResultStream::Flush() {
  if (!fReaderGone && !fPending.empty() && !WriteAll(fOutput.Get(), fPending)) {
    fReaderGone = errno == EPIPE;
    if (!fReaderGone) {
      throw MCBinModel::Refusal(
          fmt::format("cannot write to standard output: {}", std::strerror(errno)));
    }
  }
  fPending.clear();
}

}  // namespace MCBin
