#include "io/leftovers.h"

#include <dirent.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace MCBin {

bool LockAsOwner(int file) {
  struct stat status = {};
  return (flock(file, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) &&
         (fstat(file, &status) != 0 || status.st_nlink > 0);
}

bool IsOwnerGone(int file) { return flock(file, LOCK_EX | LOCK_NB) == 0; }

std::optional<std::vector<std::string>> NamesIn(int directory) {
  std::vector<std::string> names;
  alignas(dirent64) char entries[1 << 15];
  lseek(directory, 0, SEEK_SET);
  ssize_t size = 0;
  while ((size = getdents64(directory, entries, sizeof entries)) > 0) {
    for (ssize_t at = 0; at < size;) {
      const auto* const entry = reinterpret_cast<const dirent64*>(entries + at);
      const std::string name = entry->d_name;
      if (name != "." && name != "..") names.push_back(name);
      at += entry->d_reclen;
    }
  }
  if (size < 0) return std::nullopt;
  return names;
}

}  // namespace MCBin
