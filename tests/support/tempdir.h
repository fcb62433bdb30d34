#pragma once

#include <stdlib.h>

#include <cstddef>
#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <string>

// An own empty directory for as long as the object lives.
class TempDir {
 public:
  TempDir() : fPath((std::filesystem::temp_directory_path() / "mcbinning-XXXXXX").string()) {
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
  std::string fPath;
};
