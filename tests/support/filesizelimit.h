#pragma once

#include <sys/resource.h>

#include <csignal>

// While it lives, files of this process may not grow beyond so many bytes: a full disk.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t byteCount) : fHandler(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &fBefore);
    const rlimit small{byteCount, fBefore.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &fBefore);
    std::signal(SIGXFSZ, fHandler);
  }

 private:
  rlimit fBefore{};
  void (*const fHandler)(int);
};
