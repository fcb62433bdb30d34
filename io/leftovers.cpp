#include "io/leftovers.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <memory>

#include "io/filedescriptor.h"

namespace MCBin {

bool LockAsOwner(int file) {
  struct stat status = {};
  return (flock(file, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) &&
         fstat(file, &status) == 0 && status.st_nlink > 0;
}

bool IsOwnerGone(int file) { return flock(file, LOCK_EX | LOCK_NB) == 0; }

std::vector<std::string> NamesIn(int directory) {
  std::vector<std::string> names;
  // A descriptor of its own: reading moves the position of the one it is given.
  FileDescriptor copy(openat(directory, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const auto closeStream = [](DIR* stream) { closedir(stream); };
  const std::unique_ptr<DIR, decltype(closeStream)> stream(
      copy.IsOpen() ? fdopendir(copy.Get()) : nullptr, closeStream);
  if (!stream) return names;
  copy.Release();
  while (const dirent* const entry = readdir(stream.get())) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") names.push_back(name);
  }
  return names;
}

}  // namespace MCBin
