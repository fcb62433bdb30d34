#include "support/libraryfaults.h"

#include <dlfcn.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

namespace {

std::atomic<int> nextError = 0;  // none

}  // namespace

FailingClose::FailingClose(int error) { nextError = error; }

FailingClose::~FailingClose() { nextError = 0; }

// Takes the C library's place in the program.
extern "C" int close(int descriptor) {
  static const auto real = reinterpret_cast<int (*)(int)>(dlsym(RTLD_NEXT, "close"));
  const int error = nextError.exchange(0);
  const int result = real(descriptor);
  if (error == 0) return result;
  errno = error;
  return -1;
}
