#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>

#include "io/filedescriptor.h"

namespace MCBin {

// Writes all of `text` to an open file; false, with errno set, when that fails.
// Throws Interrupt::Requested; it looks after every write, however slow the reader is.
bool WriteAll(int file, std::string_view text);

// A file that is there completely or not at all, whatever happens to the program or the machine:
// written under another name in the same directory, .mcbin-<random>.tmp, flushed to the disk and
// renamed at the end.
//
// An object that dies before Commit() leaves nothing behind and an older file of that name as it
// was; one that it replaces hands on its permissions. A symbolic link stays: the file it leads to
// is written, there already or not. What is no regular file (a device, a named pipe) is written
// directly.
//
// A process that is killed may leave its unfinished file behind. The next one of the same user
// that writes into the same directory removes it, known by its name and by a lock that its owner
// holds as long as it lives.
class OutputFile {
 public:
  // Throws Refusal when the file cannot be made, so that a run fails before its work, and
  // Interrupt::Requested.
  explicit OutputFile(const std::string& path);
  ~OutputFile() { RemoveTemporary(); }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // Both throw Refusal when writing fails, and Interrupt::Requested.
  void Write(std::string_view text);
  void Commit();

 private:
  void MakeTemporary();
  void RemoveTemporary();
  [[noreturn]] void Fail(const char* what) const;

  std::string fPath;  // of the file, behind symbolic links
  std::string fDirectory;
  std::optional<mode_t> fReplacedMode;  // unset: there is no file yet
  std::string fTemporaryPath;           // empty when written directly, not begun or done
  FileDescriptor fFile;
};

}  // namespace MCBin
