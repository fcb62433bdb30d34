#include "metadata/pass/tempfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "metadata/binaryrecorditerator.h"
#include "metadata/pass/descriptor.h"

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
    : fName(std::move(other.fName)),
      fIdentity(std::exchange(other.fIdentity, Identity())),
      fSize(std::exchange(other.fSize, 0)),
      fIsDamaged(other.fIsDamaged) {}

// What someone else has written to the file, or cut off it, is removed with it.
TempFile::~TempFile() {
  if (IsBegun() && Look(AT_FDCWD, fName.c_str()).identity == fIdentity) ::unlink(fName.c_str());
}

void TempFile::SetName(std::string name) { fName = std::move(name); }

TempFile::AppendResult TempFile::Append(const double* values, std::size_t count) {
  const int whichFile = IsBegun() ? O_NOFOLLOW : O_CREAT | O_EXCL;
  Descriptor file(fName.c_str(), O_WRONLY | O_APPEND | whichFile, kOwnerOnly);
  if (!file.IsOpen()) {
    return !IsBegun() && errno == EEXIST ? AppendResult::kNameTaken : AppendResult::kFailed;
  }

  const Found found = Look(file.Get(), "");
  if (!IsBegun()) {
    fIdentity = found.identity;
    if (!IsBegun()) ::unlink(fName.c_str());  // made, but could never be known again
  }
  bool ok = IsUntouched(found);
  if (ok) {
    const std::size_t byteCount = count * sizeof(double);
    const std::size_t written = Write(file.Get(), values, byteCount);
    fSize += written;
    ok = written == byteCount;
  }
  // A full disk may show only at the close; then nobody knows what the file holds.
  if (!file.Close()) {
    fIsDamaged = true;
    ok = false;
  }
  return ok ? AppendResult::kOk : AppendResult::kFailed;
}

std::unique_ptr<BinaryRecordIterator> TempFile::OpenWhole(std::uint64_t valueCount) const {
  Descriptor file(fName.c_str(), O_RDONLY | O_NOFOLLOW);
  if (file.IsOpen() && !IsWhole(file.Get(), valueCount)) return nullptr;
  auto values = std::make_unique<BinaryRecordIterator>(fName, file);
  return values->GetFileDescriptor() < 0 ? nullptr : std::move(values);
}

bool TempFile::IsWhole(int descriptor, std::uint64_t valueCount) const {
  return fSize == valueCount * sizeof(double) && IsUntouched(Look(descriptor, ""));
}

bool TempFile::IsUntouched(const Found& found) const {
  return IsBegun() && !fIsDamaged && found.identity == fIdentity && found.size == fSize;
}

TempFile::Found TempFile::Look(int descriptor, const char* name) {
  struct statx status = {};
  const int flags = AT_SYMLINK_NOFOLLOW | (*name == '\0' ? AT_EMPTY_PATH : 0);
  if (::statx(descriptor, name, flags, STATX_BASIC_STATS | STATX_BTIME, &status) != 0) return {};

  Found found;
  found.identity.device = (std::uint64_t{status.stx_dev_major} << 32) | status.stx_dev_minor;
  found.identity.inode = status.stx_ino;
  if ((status.stx_mask & STATX_BTIME) != 0) {
    found.identity.birthSecond = status.stx_btime.tv_sec;
    found.identity.birthNanosecond = status.stx_btime.tv_nsec;
  }
  found.size = status.stx_size;
  return found;
}

}  // namespace MCBinning
