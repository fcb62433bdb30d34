#pragma once

#include <optional>
#include <string>

namespace MCBin {

// A run's own directory for temporary files, mcbin-<user>-<process>-XXXXXX, readable by
// the user alone; removed with all it holds when the object dies.
class PrivateDirectory {
 public:
  // Makes it under `parent`, or $TMPDIR, or /tmp. Throws InputError when that directory
  // cannot be written.
  explicit PrivateDirectory(const std::optional<std::string>& parent);
  ~PrivateDirectory();
  PrivateDirectory(const PrivateDirectory&) = delete;
  PrivateDirectory& operator=(const PrivateDirectory&) = delete;

  const std::string& GetPath() const { return fPath; }

 private:
  std::string fPath;
};

}  // namespace MCBin
