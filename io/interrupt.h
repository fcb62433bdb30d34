#pragma once

#include <exception>

namespace MCBin {

// Ctrl-C (and SIGTERM, SIGHUP): a flag that whatever takes long looks at, so that every object is
// destroyed and no file stays behind.
class Interrupt {
 public:
  // What ThrowIfRequested throws; the tool then ends with exit code 130.
  class Requested : public std::exception {};

  // Installs the handlers. Ignores SIGPIPE and SIGXFSZ: a closed pipe and a file that is too
  // large are seen at the write.
  //
  // Once asked for, every system call that waits ends with EINTR within a moment, however often
  // it is begun anew: it suffices to look before such a call and again when it is interrupted.
  static void Install();

  static bool IsRequested();
  static void ThrowIfRequested();

  // Waits until the file can be read or written (`events` as for poll) or has failed. Throws
  // Requested.
  static void WaitFor(int file, short events);
};

}  // namespace MCBin
