#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace MCBinning {

class BinaryRecordIterator;

// One temporary file of the data pass: made exclusively at its first append, readable by
// its owner alone, removed with this object.
//
// It is known by what it is, not by its name: whatever someone else put under the same name is
// never appended to, read or removed, nor waited for.
class TempFile {
 public:
  enum class AppendResult { kOk, kNameTaken, kFailed };

  explicit TempFile(std::string name);
  TempFile(TempFile&& other) noexcept;
  TempFile& operator=(TempFile&&) = delete;
  ~TempFile();

  const std::string& GetName() const { return fName; }

  // Whether the file has been made.
  bool IsBegun() const { return fIdentity.inode != 0; }

  // Another name, for a file that is not begun.
  void SetName(std::string name);

  // Appends `count` values. kNameTaken, with nothing written, when the file is not begun and
  // its name exists; kFailed when the file cannot be made, is another one or of another size by
  // now, or not everything could be written. Throws std::bad_alloc.
  AppendResult Append(const double* values, std::size_t count);

  // Reads the file from its beginning; null unless it is this file and holds exactly `valueCount`
  // values. Nothing is read from another one. Throws std::bad_alloc.
  std::unique_ptr<BinaryRecordIterator> OpenWhole(std::uint64_t valueCount) const;

  // Whether the open file `descriptor` is this file and holds exactly `valueCount` values.
  bool IsWhole(int descriptor, std::uint64_t valueCount) const;

 private:
  // Inode numbers are reused at once by some file systems; the time of birth, where the file
  // system keeps it, tells a successor apart.
  struct Identity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t birthSecond = 0;
    std::uint32_t birthNanosecond = 0;

    bool operator==(const Identity&) const = default;
  };

  struct Found {
    Identity identity;
    std::uint64_t size = 0;
  };

  // The open file, or the file `name` when `descriptor` is AT_FDCWD; all 0 when there is none.
  static Found Look(int descriptor, const char* name);

  // Whether what was found is this file, of the size that it was left with, and holds what was
  // written to it.
  bool IsUntouched(const Found& found) const;

  std::string fName;
  Identity fIdentity;
  std::uint64_t fSize = 0;  // in bytes
  bool fIsDamaged = false;  // an append failed at its end
};

}  // namespace MCBinning
