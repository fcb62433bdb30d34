#include "io/privatedirectory.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "io/leftovers.h"

namespace MCBin {

namespace {

constexpr const char* kLockName = "lock";
constexpr std::size_t kRandomLetters = 6;

std::string ChooseParent(const std::optional<std::string>& parent) {
  if (parent) return *parent;
  const char* const fromEnvironment = std::getenv("TMPDIR");
  const bool given = fromEnvironment != nullptr && *fromEnvironment != '\0';
  return given ? fromEnvironment : "/tmp";
}

[[noreturn]] void Refuse(const std::string& parent, int error) {
  throw MCBinModel::Refusal(MCBinModel::RefusalCode::kTemporaryFiles,
                            {{}, parent, std::strerror(error)},
                            fmt::format("cannot write temporary files in {}: {}",
                                        MCBinModel::QuotedText(parent), std::strerror(error)));
}

std::string NamePrefix() { return fmt::format("mcbin-{}-", geteuid()); }

// Whether a directory of this user can have the name.
bool IsOurName(std::string_view name) {
  const std::string prefix = NamePrefix();
  if (name.substr(0, prefix.size()) != prefix) return false;
  name.remove_prefix(prefix.size());
  const std::size_t digits = std::min(name.find_first_not_of("0123456789"), name.size());
  name.remove_prefix(digits);
  return digits > 0 && name.size() == kRandomLetters + 1 && name.front() == '-' &&
         std::all_of(name.begin() + 1, name.end(),
                     [](unsigned char letter) { return std::isalnum(letter) != 0; });
}

int OpenDirectory(int parent, const char* name) {
  return openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

// Removes a private directory whose lock is held: its files by their names in the open
// directory, links themselves and not what they lead to, the lock as the last one. With
// anything else in it, it stays, and the lock too: then the next run can try again.
void Remove(int parent, const char* name, int directory) {
  const auto files = NamesIn(directory);
  if (!files) return;
  for (const std::string& file : *files) {
    const bool stays = file != kLockName && unlinkat(directory, file.c_str(), 0) != 0;
    if (stays && errno != ENOENT) return;
  }
  unlinkat(directory, kLockName, 0);
  unlinkat(parent, name, AT_REMOVEDIR);
}

// Removes the directory when its owner is gone. One without a lock file is being made at this
// moment, or being removed, or was never begun: it goes if it is empty.
void RemoveIfLeft(int parent, const char* name) {
  const FileDescriptor directory(OpenDirectory(parent, name));
  struct stat status = {};
  const bool isOurs = directory.IsOpen() && fstat(directory.Get(), &status) == 0 &&
                      status.st_uid == geteuid() && (status.st_mode & 077) == 0;
  if (!isOurs) return;
  const FileDescriptor lock(
      openat(directory.Get(), kLockName, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (lock.IsOpen()) {
    if (IsOwnerGone(lock.Get())) Remove(parent, name, directory.Get());
  } else if (errno == ENOENT) {
    unlinkat(parent, name, AT_REMOVEDIR);
  }
}

void RemoveLeftovers(const std::string& parentPath) {
  const FileDescriptor parent(open(parentPath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  for (const std::string& name : NamesIn(parent.Get()).value_or(std::vector<std::string>())) {
    if (IsOurName(name)) RemoveIfLeft(parent.Get(), name.c_str());
  }
}

// A full disk shows here, not after an hour.
bool WriteByte(int file) {
  ssize_t written = -1;
  do {
    written = write(file, "x", 1);
  } while (written < 0 && errno == EINTR);
  return written == 1;
}

}  // namespace

PrivateDirectory::PrivateDirectory(const std::optional<std::string>& parent) {
  const std::string base = ChooseParent(parent);
  RemoveLeftovers(base);
  while (!Make(base)) continue;
}

// False when another process took the new directory for a leftover before it was locked.
bool PrivateDirectory::Make(const std::string& parent) {
  const std::string letters(kRandomLetters, 'X');
  std::string path = fmt::format("{}/{}{}-{}", parent, NamePrefix(), getpid(), letters);
  if (mkdtemp(path.data()) == nullptr) Refuse(parent, errno);

  fDirectory.Reset(OpenDirectory(AT_FDCWD, path.c_str()));
  if (fDirectory.IsOpen()) {
    fLock.Reset(openat(fDirectory.Get(), kLockName, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  }
  if (!fLock.IsOpen() && errno == ENOENT) return false;
  const bool written = fLock.IsOpen() && WriteByte(fLock.Get());
  const int error = errno;
  if (!written) {
    unlinkat(fDirectory.Get(), kLockName, 0);
    rmdir(path.c_str());
    Refuse(parent, error);
  }
  if (!LockAsOwner(fLock.Get())) return false;
  fPath = path;
  return true;
}

PrivateDirectory::~PrivateDirectory() { Remove(AT_FDCWD, fPath.c_str(), fDirectory.Get()); }

}  // namespace MCBin
