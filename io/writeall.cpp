#include "io/writeall.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "io/interrupt.h"

namespace MCBin {

bool WriteAll(int file, std::string_view text) {
  constexpr std::size_t kMostBytesAtOnce = std::size_t{1} << 20;  // a disk is not interrupted
  while (!text.empty()) {
    const ssize_t written = write(file, text.data(), std::min(text.size(), kMostBytesAtOnce));
    Interrupt::ThrowIfRequested();
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EAGAIN) {
      Interrupt::WaitFor(file, POLLOUT);
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

}  // namespace MCBin
