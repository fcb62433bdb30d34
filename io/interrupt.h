#pragma once

#include <exception>

namespace MCBin {

// Ctrl-C (and SIGTERM, SIGHUP): a flag that the pass over the file and the component's
// cancel query poll, so that every object is destroyed and no file stays behind.
class Interrupt {
 public:
  // What ThrowIfRequested throws; the tool then ends with exit code 130.
  class Requested : public std::exception {};

  // Installs the handlers, and ignores SIGPIPE: a closed pipe is seen at the write.
  static void Install();

  static bool IsRequested();
  static void ThrowIfRequested();
};

}  // namespace MCBin
