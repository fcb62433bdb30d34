#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

// A new directory below $TMPDIR or else /tmp, removed with all that is in it: whatever happens to
// the run, no temporary file stays behind.
class WorkDirectory {
 public:
  WorkDirectory() : fPath(std::filesystem::temp_directory_path() / "mcbinning_XXXXXX") {
    if (mkdtemp(fPath.data()) == nullptr) throw std::runtime_error("cannot make " + fPath);
  }
  ~WorkDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(fPath, ignored);
  }
  WorkDirectory(const WorkDirectory&) = delete;
  WorkDirectory& operator=(const WorkDirectory&) = delete;

  const std::string& Path() const { return fPath; }

 private:
  std::string fPath;
};
