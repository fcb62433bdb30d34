#include "io/writeall.h"

#include <unistd.h>

#include <cerrno>

#include "io/interrupt.h"

namespace MCBin {

bool WriteAll(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(file, text.data(), text.size());
    if (written < 0 && errno == EINTR) {
      Interrupt::ThrowIfRequested();
      continue;
    }
    if (written < 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace MCBin
