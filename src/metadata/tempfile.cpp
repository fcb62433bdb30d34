#include "metadata/tempfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

namespace MCBinning {

namespace {

constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

// How many bytes were written: all unless the disk is full or the file may not grow.
std::size_t Write(int descriptor, const double* values, std::size_t byteCount) {
  const char* const bytes = reinterpret_cast<const char*>(values);
  std::size_t done = 0;
  while (done < byteCount) {
    const ssize_t written = ::write(descriptor, bytes + done, byteCount - done);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) break;
    done += static_cast<std::size_t>(written);
  }
  return done;
}

}  // namespace

TempFile::TempFile(std::string name) : fName(std::move(name)) {}

TempFile::TempFile(TempFile&& other) noexcept
    : fName(std::move(other.fName)), fIdentity(std::exchange(other.fIdentity, Identity())) {}

TempFile::~TempFile() {
  if (IsBegun() && Identify(AT_FDCWD, fName.c_str()) == fIdentity) std::remove(fName.c_str());
}

void TempFile::SetName(std::string name) { fName = std::move(name); }

TempFile::AppendResult TempFile::Append(const double* values, std::size_t count) {
  const int flags = O_WRONLY | O_APPEND | O_CLOEXEC | (IsBegun() ? O_NOFOLLOW : O_CREAT | O_EXCL);
  const int descriptor = ::open(fName.c_str(), flags, kOwnerOnly);
  if (descriptor < 0) {
    return !IsBegun() && errno == EEXIST ? AppendResult::kNameTaken : AppendResult::kFailed;
  }

  const Identity found = Identify(descriptor, "");
  if (!IsBegun()) {
    fIdentity = found;
    if (!IsBegun()) std::remove(fName.c_str());  // made, but could never be known again
  }
  bool ok = IsBegun() && found == fIdentity;
  if (ok) {
    const std::size_t byteCount = count * sizeof(double);
    const std::size_t written = Write(descriptor, values, byteCount);
    fIdentity.size += written;
    ok = written == byteCount;
  }
  // A full disk may show only at the close.
  ok = ::close(descriptor) == 0 && ok;
  return ok ? AppendResult::kOk : AppendResult::kFailed;
}

bool TempFile::IsWhole(int descriptor, std::uint64_t valueCount) const {
  return IsBegun() && fIdentity.size == valueCount * sizeof(double) &&
         Identify(descriptor, "") == fIdentity;
}

TempFile::Identity TempFile::Identify(int descriptor, const char* name) {
  struct statx status = {};
  const int flags = AT_SYMLINK_NOFOLLOW | (*name == '\0' ? AT_EMPTY_PATH : 0);
  if (::statx(descriptor, name, flags, STATX_BASIC_STATS | STATX_BTIME, &status) != 0) return {};

  Identity identity;
  identity.device = (std::uint64_t{status.stx_dev_major} << 32) | status.stx_dev_minor;
  identity.inode = status.stx_ino;
  identity.size = status.stx_size;
  if ((status.stx_mask & STATX_BTIME) != 0) {
    identity.birthSecond = status.stx_btime.tv_sec;
    identity.birthNanosecond = status.stx_btime.tv_nsec;
  }
  return identity;
}

}  // namespace MCBinning
