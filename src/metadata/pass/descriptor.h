#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <new>
#include <utility>

namespace MCBinning {

// An open file, closed with this object.
class Descriptor {
 public:
  // Opens a file without waiting for anyone, whatever bears the name by now, and without reading
  // from it; O_CLOEXEC is added. Throws std::bad_alloc.
  Descriptor(const char* name, int flags, mode_t mode = 0) {
    do {
      fDescriptor = ::open(name, flags | O_NONBLOCK | O_CLOEXEC, mode);
    } while (fDescriptor < 0 && errno == EINTR);
    if (fDescriptor < 0 && errno == ENOMEM) throw std::bad_alloc();
  }
  Descriptor(Descriptor&& other) noexcept : fDescriptor(other.Release()) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { Close(); }

  bool IsOpen() const { return fDescriptor >= 0; }

  // -1 when it is not open.
  int Get() const { return fDescriptor; }

  // It is the caller's from now on.
  int Release() { return std::exchange(fDescriptor, -1); }

  // Reads what comes next into memory for so many bytes, and returns how many there were: fewer at
  // the end of the file, or where it cannot be read.
  std::size_t Read(void* memory, std::size_t byteCount) const {
    std::size_t done = 0;
    while (done < byteCount) {
      const ssize_t count =
          ::read(fDescriptor, static_cast<char*>(memory) + done, byteCount - done);
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) break;
      done += static_cast<std::size_t>(count);
    }
    return done;
  }

  // False on an error, which on a full disk may be the first one.
  bool Close() { return !IsOpen() || ::close(Release()) == 0; }

 private:
  int fDescriptor;
};

}  // namespace MCBinning
