#pragma once

#include <string>
#include <string_view>

#include "io/filedescriptor.h"

namespace MCBin {

// A file that is there completely or not at all: written under a temporary name in the
// same directory and renamed at the end.
//
// An object that dies before Commit() leaves nothing behind and an older file of that
// name as it was; one that it replaces hands on its permissions. What is no regular file
// (a device, a named pipe) is written directly.
class OutputFile {
 public:
  // Throws Refusal when the file cannot be made, so that a run fails before its work.
  explicit OutputFile(const std::string& path);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // Throw Refusal when writing fails.
  void Write(std::string_view text);
  void Commit();

 private:
  [[noreturn]] void Fail(const char* what) const;

  std::string fPath;           // of the file, behind symbolic links
  std::string fTemporaryPath;  // empty when written directly or done
  FileDescriptor fFile;
};

}  // namespace MCBin
