#include "support/libraryfaults.h"

#include <dlfcn.h>
#include <fcntl.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>

namespace libraryfaults {

namespace {

constexpr int kNone = -1;

Call failingCall;
int callsLeft = kNone;  // that succeed before the one that fails
int failingError;

bool Fails(Call call) {
  if (callsLeft == kNone || call != failingCall || callsLeft-- > 0) return false;
  errno = failingError;
  return true;
}

// The C library's own.
template <typename Function>
Function* Real(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

Failing::Failing(Call call, int count, int error) {
  failingCall = call;
  failingError = error;
  callsLeft = count;
}

Failing::~Failing() { callsLeft = kNone; }

bool Failing::HasFailed() const { return callsLeft == kNone; }

}  // namespace libraryfaults

// These take the C library's place in the program.

extern "C" int close(int descriptor) {
  static const auto real = libraryfaults::Real<int(int)>("close");
  const bool fails = libraryfaults::Fails(libraryfaults::Call::kClose);
  const int error = errno;
  const int result = real(descriptor);
  if (!fails) return result;
  errno = error;
  return -1;
}

extern "C" std::FILE* fdopen(int descriptor, const char* mode) noexcept {
  static const auto real = libraryfaults::Real<std::FILE*(int, const char*)>("fdopen");
  return libraryfaults::Fails(libraryfaults::Call::kFdopen) ? nullptr : real(descriptor, mode);
}

extern "C" std::size_t fread(void* into, std::size_t size, std::size_t count, std::FILE* file) {
  static const auto real =
      libraryfaults::Real<std::size_t(void*, std::size_t, std::size_t, std::FILE*)>("fread");
  return libraryfaults::Fails(libraryfaults::Call::kFread) ? 0 : real(into, size, count, file);
}

extern "C" int open(const char* name, int flags, ...) {
  static const auto real = libraryfaults::Real<int(const char*, int, mode_t)>("open");
  std::va_list rest;
  va_start(rest, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  return libraryfaults::Fails(libraryfaults::Call::kOpen) ? -1 : real(name, flags, mode);
}
