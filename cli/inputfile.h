#pragma once

#include <cstdint>
#include <string>

#include "cli/filedescriptor.h"
#include "cli/inputstream.h"

namespace MCBin {

// The input, open for two passes. Standard input and other pipes are first copied into
// the run's private directory.
class InputFile {
 public:
  // Opens `path`; "-" is standard input. Throws InputError when there is no such file, it
  // is a directory or it is empty, and Interrupt::Requested.
  InputFile(const std::string& path, const std::string& privateDirectory);

  int Get() const { return fFile; }
  std::uint64_t GetSize() const { return fSize; }

  // For messages: the path, or "standard input".
  const std::string& GetName() const { return fInput.GetName(); }

 private:
  void CopyPipe(const std::string& privateDirectory);

  InputStream fInput;
  FileDescriptor fCopy;  // of a pipe, in the private directory
  int fFile;             // the input or its copy
  std::uint64_t fSize;
};

}  // namespace MCBin
