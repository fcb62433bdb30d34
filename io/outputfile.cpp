#include "io/outputfile.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "io/interrupt.h"
#include "io/leftovers.h"
#include "io/pathtext.h"

namespace MCBin {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kNameStart = ".mcbin-";
constexpr std::string_view kNameEnd = ".tmp";
constexpr std::size_t kRandomDigits = 16;

// A name that was never given before: a number of 64 bits without meaning.
std::string MakeName() {
  std::uint64_t number = 0;
  while (getrandom(&number, sizeof number, 0) < 0 && errno == EINTR) Interrupt::ThrowIfRequested();
  return fmt::format("{}{:016x}{}", kNameStart, number, kNameEnd);
}

bool IsOurName(std::string_view name) {
  if (name.size() != kNameStart.size() + kRandomDigits + kNameEnd.size()) return false;
  const std::string_view digits = name.substr(kNameStart.size(), kRandomDigits);
  return name.substr(0, kNameStart.size()) == kNameStart &&
         name.substr(name.size() - kNameEnd.size()) == kNameEnd &&
         digits.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

// Nothing but a regular file of this user is opened, as opening can have effects of its own.
void RemoveIfLeft(int directory, const char* name) {
  struct stat status = {};
  const bool isOurs = fstatat(directory, name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
                      S_ISREG(status.st_mode) && status.st_uid == geteuid();
  if (!isOurs) return;
  const FileDescriptor file(openat(directory, name, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (file.IsOpen() && IsOwnerGone(file.Get())) unlinkat(directory, name, 0);
}

void RemoveLeftovers(const std::string& directoryPath) {
  const FileDescriptor directory(open(directoryPath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  for (const std::string& name : NamesIn(directory.Get()).value_or(std::vector<std::string>())) {
    if (IsOurName(name)) RemoveIfLeft(directory.Get(), name.c_str());
  }
}

// Where symbolic links lead, also to what is not there. A ring of them stays one.
std::string FollowLinks(fs::path path) {
  constexpr int kMostLinks = 40;
  for (int link = 0; link < kMostLinks; ++link) {
    std::error_code isNoLink;
    const fs::path target = fs::read_symlink(path, isNoLink);
    if (isNoLink) break;
    path = path.parent_path() / target;
  }
  return path.string();
}

// What was written is on the disk. Some file systems do that without being asked.
bool Flush(int file) {
  while (fsync(file) != 0) {
    if (errno == EINVAL) return true;
    if (errno != EINTR) return false;
    Interrupt::ThrowIfRequested();
  }
  return true;
}

// A directory that may not be read cannot be opened for that: the system will see to it.
bool FlushDirectory(const std::string& path) {
  const FileDescriptor directory(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return !directory.IsOpen() || Flush(directory.Get());
}

}  // namespace

bool WriteAll(int file, std::string_view text) {
  constexpr std::size_t kMostBytesAtOnce = std::size_t{1} << 20;  // a disk is not interrupted
  while (!text.empty()) {
    const ssize_t written = write(file, text.data(), std::min(text.size(), kMostBytesAtOnce));
    Interrupt::ThrowIfRequested();
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EAGAIN) {
      Interrupt::WaitFor(file, POLLOUT);
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

OutputFile::OutputFile(const std::string& path) : fPath(path) {
  struct stat status = {};
  const bool exists = stat(path.c_str(), &status) == 0;
  if (exists && S_ISDIR(status.st_mode)) {
    throw MCBinModel::Refusal(MCBinModel::RefusalCode::kNotAFile,
                              {MCBinModel::QuotedText(path), {}, {}},
                              "this is a directory; give a file name");
  }
  if (exists && !S_ISREG(status.st_mode)) {
    do {  // a named pipe that nobody reads is waited for
      Interrupt::ThrowIfRequested();
      fFile.Reset(open(path.c_str(), O_WRONLY | O_CLOEXEC));
    } while (!fFile.IsOpen() && errno == EINTR);
    if (!fFile.IsOpen()) Fail("cannot open it");
    return;
  }
  const bool canBeMade = !path.empty() && errno == ENOENT;
  if (!exists && !canBeMade) Fail("cannot write it");

  if (exists) fReplacedMode = status.st_mode & 07777;
  fPath = FollowLinks(path);
  const std::string parent = fs::path(fPath).parent_path().string();
  fDirectory = parent.empty() ? "." : parent;
  RemoveLeftovers(fDirectory);
  MakeTemporary();  // whether that can be shows now; the name itself is not needed yet
  RemoveTemporary();
  fFile.Close();
}

void OutputFile::Write(std::string_view text) {
  if (!fFile.IsOpen()) MakeTemporary();
  if (!WriteAll(fFile.Get(), text)) Fail("cannot write it");
}

void OutputFile::Commit() {
  const bool isWrittenDirectly = fTemporaryPath.empty();
  if (!isWrittenDirectly && !Flush(fFile.Get())) Fail("cannot write it");
  // Keeps the lock until the file has its own name.
  const FileDescriptor lock(fcntl(fFile.Get(), F_DUPFD_CLOEXEC, 0));
  if (!fFile.Close()) Fail("cannot write it");
  if (isWrittenDirectly) return;

  Interrupt::ThrowIfRequested();
  if (std::rename(fTemporaryPath.c_str(), fPath.c_str()) != 0) Fail("cannot rename the new file");
  fTemporaryPath.clear();
  if (!FlushDirectory(fDirectory)) Fail("it is written, but may be gone after a power failure");
}

// As private from the beginning as the file that it replaces.
void OutputFile::MakeTemporary() {
  do {
    fTemporaryPath = fmt::format("{}/{}", fDirectory, MakeName());
    fFile.Reset(open(fTemporaryPath.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC,
                     fReplacedMode ? 0600 : 0666));
    if (!fFile.IsOpen()) {
      fTemporaryPath.clear();
      Fail("cannot write it");
    }
  } while (!LockAsOwner(fFile.Get()));
  if (fReplacedMode) fchmod(fFile.Get(), *fReplacedMode);
}

void OutputFile::RemoveTemporary() {
  if (!fTemporaryPath.empty()) unlink(fTemporaryPath.c_str());
  fTemporaryPath.clear();
}

void OutputFile::Fail(const char* what) const {
  const char* const why = std::strerror(errno);
  throw MCBinModel::Refusal(MCBinModel::RefusalCode::kNotWritten, {PathText(fPath), {}, why},
                            fmt::format("{}: {}", what, why));
}

}  // namespace MCBin
