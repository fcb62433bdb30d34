#pragma once

#include <stdlib.h>
#include <unistd.h>

#include <cstddef>
#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <string>

// An own empty directory for as long as the object lives; in memory where the system has
// such a place, since thousands of small files are made and removed.
class TempDir {
 public:
  TempDir() : fPath((Base() / "mcbinning-XXXXXX").string()) {
    if (mkdtemp(fPath.data()) == nullptr) throw std::runtime_error("cannot make " + fPath);
  }
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(fPath, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& Path() const { return fPath; }

  std::size_t FileCount() const {
    const std::filesystem::directory_iterator files(fPath);
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
  }

 private:
  static std::filesystem::path Base() {
    const std::filesystem::path inMemory = "/dev/shm";
    const bool usable = getenv("TMPDIR") == nullptr && access(inMemory.c_str(), W_OK) == 0;
    return usable ? inMemory : std::filesystem::temp_directory_path();
  }

  std::string fPath;
};
