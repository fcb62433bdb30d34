#pragma once

#include <optional>
#include <string>

#include "io/filedescriptor.h"

namespace MCBin {

// A run's own directory for temporary files, mcbin-<user>-<process>-XXXXXX, readable by
// the user alone; removed with all it holds when the object dies.
//
// A process that is killed leaves its directory behind. The next one of the same user that
// works in the same place removes it: the file `lock` inside is locked as long as its owner
// lives, whatever becomes of process numbers.
class PrivateDirectory {
 public:
  // Makes it under `parent`, or $TMPDIR, or /tmp, and removes what killed runs left there.
  // Throws Refusal when that directory cannot be written.
  explicit PrivateDirectory(const std::optional<std::string>& parent);
  ~PrivateDirectory();
  PrivateDirectory(const PrivateDirectory&) = delete;
  PrivateDirectory& operator=(const PrivateDirectory&) = delete;

  const std::string& GetPath() const { return fPath; }

 private:
  bool Make(const std::string& parent);

  std::string fPath;
  FileDescriptor fDirectory;  // kept open: its removal must not fail for want of a descriptor
  FileDescriptor fLock;
};

}  // namespace MCBin
