#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "io/filedescriptor.h"

namespace MCBin {

// The input, open for one pass from its front.
class InputStream {
 public:
  // Opens `path`; "-" is standard input. `expected` names what should be in it: "a CSV file".
  // Throws Refusal when there is no such file or it is a directory, and Interrupt::Requested.
  InputStream(const std::string& path, const char* expected);

  int Get() const { return fFile.Get(); }

  // For messages: the path, or "standard input".
  const std::string& GetName() const { return fName; }

  // A file that stands at its front; its size, 0 for anything else.
  bool IsRegularFile() const { return fIsRegularFile; }
  std::uint64_t GetSize() const { return fSize; }

  // Reads what there is of an open file, at least a byte, and waits for it; 0 at the end. `name` is
  // for messages. Throws Refusal when that fails, and Interrupt::Requested.
  static std::size_t Read(int file, const std::string& name, char* to, std::size_t room);

 private:
  std::string fName;
  FileDescriptor fFile;
  bool fIsRegularFile = false;
  std::uint64_t fSize = 0;
};

// A whole file, and its name for messages.
struct InputText {
  std::string name;
  std::string text;
};

// Reads all of a file that is small beside the memory; "-" is standard input. `first` is what
// its first character must be, blanks and a byte-order mark left aside: another file, however
// large, is refused at once. `expected` says what the file should be.
//
// Throws Refusal, also for a file of more than 256 MiB, and Interrupt::Requested.
InputText ReadAll(const std::string& path, char first, const char* expected);

}  // namespace MCBin
