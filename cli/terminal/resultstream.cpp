#include "cli/terminal/resultstream.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "io/outputfile.h"

namespace MCBin {

namespace {

constexpr std::size_t kBlockBytes = std::size_t{1} << 16;
constexpr int kFirstOwnDescriptor = 3;

[[noreturn]] void Fail() {
  const char* const why = std::strerror(errno);
  throw MCBinModel::Refusal(MCBinModel::RefusalCode::kNotWritten, {{}, {}, why},
                            fmt::format("cannot write to standard output: {}", why));
}

}  // namespace

ResultStream::ResultStream()
    : fOutput(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, kFirstOwnDescriptor)),
      fIsTerminal(isatty(STDOUT_FILENO) == 1) {
  // A standard descriptor that is closed is taken, so that no other file becomes it.
  int nowhere = open("/dev/null", O_RDWR);
  while (nowhere >= 0 && nowhere < kFirstOwnDescriptor) nowhere = open("/dev/null", O_RDWR);
  dup2(nowhere >= 0 ? nowhere : STDERR_FILENO, STDOUT_FILENO);
  if (nowhere >= 0) close(nowhere);
}

ResultStream::~ResultStream() {
  if (fOutput.IsOpen()) dup2(fOutput.Get(), STDOUT_FILENO);
}

void ResultStream::Write(std::string_view text) {
  fPending += text;
  if (fPending.size() >= kBlockBytes) Flush();
}

void ResultStream::WriteContent(std::string_view text) {
  if (!fIsTerminal) return Write(text);
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    Write(MCBinModel::PrintableText(line));
    const bool hasLineEnd = line.size() < text.size();
    if (hasLineEnd) Write("\n");
    text.remove_prefix(line.size() + (hasLineEnd ? 1 : 0));
  }
}

void ResultStream::Flush() {
  if (!fReaderGone && !fPending.empty() && !WriteAll(fOutput.Get(), fPending)) {
    fReaderGone = errno == EPIPE;
    if (!fReaderGone) Fail();
  }
  fPending.clear();
}

void ResultStream::Close() {
  Flush();
  dup2(fOutput.Get(), STDOUT_FILENO);
  if (!fOutput.Close()) Fail();
}

}  // namespace MCBin
