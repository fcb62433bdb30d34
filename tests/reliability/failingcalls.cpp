// A library to be preloaded: stands between a program and the C library, counts the program's
// calls that deal with files and threads, and makes one of them fail, as a full disk or a worn
// out one would. Controlled by the environment:
//
//   FAILING_CALLS_LOG=FILE   where calls are told about, a line each: its name, how many errors it
//                            knows, which one it got (-, or a number, 0 for a short count) and
//                            what it was about, a path most often
//   FAILING_CALLS_NUMBER=N   the N-th call fails, the first one is 1; without, none does and all
//                            are logged, otherwise only those that fail
//   FAILING_CALLS_ERROR=K    with the K-th of its errors, from 0 on
//   FAILING_CALLS_ON=1       so does every later call that knows this error; a write first does
//                            half of its work, as on a disk that fills up
//   FAILING_CALLS_SIGNAL=S   instead of failing, the call comes after this signal
//
// A close that fails loses half of a file that was written and not flushed.
//
// It knows the calls that the library and the tool make; a new kind goes into the list at the end.
// Those that the C library makes itself (a buffered write) are not seen, what leads there is.

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>

namespace {

constexpr int kNone = -1;
constexpr int kShort = 0;  // no error: half of the bytes

// What each kind of call may meet.
constexpr int kOpening[] = {EMFILE, EACCES, EIO, ENOMEM};
constexpr int kMaking[] = {ENOSPC, EMFILE, EACCES, EIO};
constexpr int kReading[] = {EIO, EINTR, kShort};
constexpr int kWriting[] = {ENOSPC, EIO, EINTR, kShort};
constexpr int kReadingStreams[] = {EIO, EINTR};
constexpr int kWritingStreams[] = {ENOSPC, EIO};
constexpr int kClosing[] = {EIO, ENOSPC};
constexpr int kFlushing[] = {EIO, ENOSPC};
constexpr int kNaming[] = {ENOSPC, EIO, EACCES};
constexpr int kRemoving[] = {EIO, EACCES};
constexpr int kLooking[] = {EIO, ENOMEM};
constexpr int kSeeking[] = {EIO};
constexpr int kAllocating[] = {ENOMEM};
constexpr int kLocking[] = {ENOLCK, EINTR};
constexpr int kDuplicating[] = {EMFILE};
constexpr int kWaiting[] = {EINTR, ENOMEM};
constexpr int kChanging[] = {EPERM, EIO};
constexpr int kStarting[] = {EAGAIN};

using Errors = std::span<const int>;

long NumberFrom(const char* variable) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? 0 : std::strtol(text, nullptr, 10);
}

// What the environment asks for.
struct Plan {
  const char* log = std::getenv("FAILING_CALLS_LOG");
  long number = NumberFrom("FAILING_CALLS_NUMBER");
  long error = NumberFrom("FAILING_CALLS_ERROR");
  bool on = NumberFrom("FAILING_CALLS_ON") != 0;
  int signal = static_cast<int>(NumberFrom("FAILING_CALLS_SIGNAL"));
};

std::atomic<bool> gIsCounting = true;
std::atomic<long> gCallCount = 0;
std::atomic<int> gErrorForGood = kNone;
std::atomic<ino_t> gFlushed = 0;  // the file that was flushed last

const Plan& GetPlan() {
  static const Plan plan;
  return plan;
}

// What a call is about.
struct Subject {
  int descriptor = -1;
  const char* path = nullptr;
};

// By system calls, past the functions below.
void Log(const char* name, Subject subject, Errors errors, int error) {
  if (GetPlan().log == nullptr) return;
  const int saved = errno;
  char about[512] = "-";
  if (subject.path != nullptr && *subject.path != '\0') {
    std::snprintf(about, sizeof about, "%s", subject.path);
  } else if (subject.descriptor >= 0 && subject.descriptor <= STDERR_FILENO) {
    std::snprintf(about, sizeof about, "standard %d", subject.descriptor);
  } else if (subject.descriptor >= 0) {
    char link[64];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", subject.descriptor);
    const long length = syscall(SYS_readlinkat, AT_FDCWD, link, about, sizeof about - 1);
    about[length > 0 ? length : 0] = '\0';
  }
  char fault[16] = "-";
  if (error != kNone) std::snprintf(fault, sizeof fault, "%d", error);
  char line[640];
  const int length =
      std::snprintf(line, sizeof line, "%s %zu %s %s\n", name, errors.size(), fault, about);
  const long file =
      syscall(SYS_openat, AT_FDCWD, GetPlan().log, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
  syscall(SYS_write, file, line, length);
  syscall(SYS_close, file);
  errno = saved;
}

// What happens to the next call, one that knows these errors: an error, kShort or kNone.
int FaultOf(const char* name, Subject subject, Errors errors) {
  if (!gIsCounting) return kNone;
  const Plan& plan = GetPlan();
  const long number = ++gCallCount;
  int fault = kNone;
  if (number == plan.number && plan.signal != 0) {
    std::raise(plan.signal);
  } else if (number == plan.number) {
    fault = errors[static_cast<std::size_t>(plan.error) % errors.size()];
    if (plan.on && fault != kShort && fault != EINTR) gErrorForGood = fault;
    if (plan.on && fault == ENOSPC && errors.data() == kWriting) fault = kShort;
  } else if (gErrorForGood != kNone) {
    for (const int error : errors) {
      if (error == gErrorForGood) fault = error;
    }
  }
  if (fault != kNone || plan.number == 0) Log(name, subject, errors, fault);
  if (fault > 0) errno = fault;
  return fault;
}

// The inode of a regular file, 0 for anything else.
ino_t InodeOf(int file, off_t* size = nullptr) {
  struct stat status = {};
  if (syscall(SYS_fstat, file, &status) != 0 || !S_ISREG(status.st_mode)) return 0;
  if (size != nullptr) *size = status.st_size;
  return status.st_ino;
}

// What a disk that fails late does to a file that was written and not flushed: its second half
// holds zeros.
void LoseHalf(int file) {
  static constexpr char kZeros[4096] = {};
  off_t size = 0;
  const ino_t inode = InodeOf(file, &size);
  const long flags = syscall(SYS_fcntl, file, F_GETFL);
  const bool isWritten = flags >= 0 && (flags & O_ACCMODE) != O_RDONLY;
  if (!isWritten || inode == 0 || inode == gFlushed) return;
  syscall(SYS_fcntl, file, F_SETFL, flags & ~O_APPEND);
  long written = 1;
  for (off_t at = size / 2; at < size && written > 0; at += written) {
    const auto left = static_cast<std::size_t>(size - at);
    written = syscall(SYS_pwrite64, file, kZeros, std::min(left, sizeof kZeros), at);
  }
}

Subject About(int descriptor, const char* path = nullptr) { return {descriptor, path}; }
Subject About(const char* path) { return {-1, path}; }
Subject About(FILE* stream) { return {fileno(stream), nullptr}; }

Errors ErrorsOfOpen(int flags) { return (flags & O_CREAT) != 0 ? Errors(kMaking) : kOpening; }

}  // namespace

// A host says when its calls count; at first they do.
extern "C" __attribute__((visibility("default"))) void CountCalls(bool on) { gIsCounting = on; }

// Declares what takes the place of a function and `real`, the function itself. The names are
// those of the linker only, as the C library's headers declare the same ones in another way.
#define IN_PLACE_OF(result, name, parameters)                                                    \
  extern "C" __attribute__((visibility("default"))) result Failing_##name parameters asm(#name); \
  namespace {                                                                                    \
  const auto Real_##name = [] {                                                                  \
    static const auto real = reinterpret_cast<result(*) parameters>(dlsym(RTLD_NEXT, #name));    \
    return real;                                                                                 \
  };                                                                                             \
  }                                                                                              \
  result Failing_##name parameters

// A function that does nothing but fail, where it does.
#define FAILING(result, name, parameters, arguments, subject, errors, failure) \
  IN_PLACE_OF(result, name, parameters) {                                      \
    if (FaultOf(#name, subject, errors) != kNone) return failure;              \
    return Real_##name() arguments;                                            \
  }

// A function that transfers `size` bytes by a descriptor, all or half of them.
#define TRANSFERRING(result, name, parameters, whole, half, size, errors) \
  IN_PLACE_OF(result, name, parameters) {                                 \
    const int fault = FaultOf(#name, About(file), errors);                \
    if (fault > 0) return -1;                                             \
    if (fault == kShort && size > 1) return Real_##name() half;           \
    return Real_##name() whole;                                           \
  }

// One that ends something, which it does in any case, and tells a failure afterwards.
#define ENDING(name, parameters, arguments, subject, failure) \
  IN_PLACE_OF(int, name, parameters) {                        \
    const int fault = FaultOf(#name, subject, kClosing);      \
    if (fault != kNone) LoseHalf(subject.descriptor);         \
    const int result = Real_##name() arguments;               \
    if (fault == kNone) return result;                        \
    errno = fault;                                            \
    return failure;                                           \
  }

FAILING(int, open, (const char* path, int flags, mode_t mode), (path, flags, mode), About(path),
        ErrorsOfOpen(flags), -1)
FAILING(int, openat, (int at, const char* path, int flags, mode_t mode), (at, path, flags, mode),
        About(at, path), ErrorsOfOpen(flags), -1)
FAILING(FILE*, fdopen, (int file, const char* mode), (file, mode), About(file), kAllocating,
        nullptr)
FAILING(char*, mkdtemp, (char* path), (path), About(path), kMaking, nullptr)

TRANSFERRING(ssize_t, read, (int file, void* to, std::size_t size), (file, to, size),
             (file, to, size / 2), size, kReading)
TRANSFERRING(ssize_t, pread, (int file, void* to, std::size_t size, off_t at), (file, to, size, at),
             (file, to, size / 2, at), size, kReading)
TRANSFERRING(ssize_t, write, (int file, const void* from, std::size_t size), (file, from, size),
             (file, from, size / 2), size, kWriting)
TRANSFERRING(ssize_t, pwrite, (int file, const void* from, std::size_t size, off_t at),
             (file, from, size, at), (file, from, size / 2, at), size, kWriting)

// Half of it is done, then comes the error.
IN_PLACE_OF(std::size_t, fread, (void* to, std::size_t size, std::size_t count, FILE* stream)) {
  const int fault = FaultOf("fread", About(stream), kReadingStreams);
  if (fault == kNone) return Real_fread()(to, size, count, stream);
  const std::size_t done = Real_fread()(to, size, count / 2, stream);
  stream->_flags |= _IO_ERR_SEEN;
  errno = fault;
  return done;
}

IN_PLACE_OF(std::size_t, fwrite,
            (const void* from, std::size_t size, std::size_t count, FILE* stream)) {
  const int fault = FaultOf("fwrite", About(stream), kWritingStreams);
  if (fault == kNone) return Real_fwrite()(from, size, count, stream);
  const std::size_t done = Real_fwrite()(from, size, count / 2, stream);
  stream->_flags |= _IO_ERR_SEEN;
  errno = fault;
  return done;
}

FAILING(int, fputs, (const char* text, FILE* stream), (text, stream), About(stream),
        kWritingStreams, EOF)
FAILING(int, fflush, (FILE * stream), (stream), stream == nullptr ? Subject() : About(stream),
        kWritingStreams, EOF)

ENDING(close, (int file), (file), About(file), -1)
ENDING(fclose, (FILE * stream), (stream), About(stream), EOF)

FAILING(int, rename, (const char* from, const char* to), (from, to), About(to), kNaming, -1)
FAILING(int, unlink, (const char* path), (path), About(path), kRemoving, -1)
FAILING(int, unlinkat, (int at, const char* path, int flags), (at, path, flags), About(at, path),
        kRemoving, -1)
FAILING(int, rmdir, (const char* path), (path), About(path), kRemoving, -1)

FAILING(int, stat, (const char* path, struct stat* status), (path, status), About(path), kLooking,
        -1)
FAILING(int, lstat, (const char* path, struct stat* status), (path, status), About(path), kLooking,
        -1)
FAILING(int, fstat, (int file, struct stat* status), (file, status), About(file), kLooking, -1)
FAILING(int, fstatat, (int at, const char* path, struct stat* status, int flags),
        (at, path, status, flags), About(at, path), kLooking, -1)
FAILING(int, statx, (int at, const char* path, int flags, unsigned mask, struct statx* status),
        (at, path, flags, mask, status), About(at, path), kLooking, -1)
FAILING(char*, realpath, (const char* path, char* resolved), (path, resolved), About(path),
        kLooking, nullptr)
FAILING(ssize_t, readlink, (const char* path, char* to, std::size_t size), (path, to, size),
        About(path), kLooking, -1)
FAILING(ssize_t, getdents64, (int file, void* to, std::size_t size), (file, to, size), About(file),
        kSeeking, -1)

IN_PLACE_OF(int, fsync, (int file)) {
  if (FaultOf("fsync", About(file), kFlushing) != kNone) return -1;
  const int result = Real_fsync()(file);
  if (const ino_t inode = InodeOf(file); result == 0 && inode != 0) gFlushed = inode;
  return result;
}

FAILING(off_t, lseek, (int file, off_t to, int from), (file, to, from), About(file), kSeeking, -1)
FAILING(int, fseek, (FILE * stream, long to, int from), (stream, to, from), About(stream), kSeeking,
        -1)
FAILING(int, fchmod, (int file, mode_t mode), (file, mode), About(file), kChanging, -1)
FAILING(int, flock, (int file, int operation), (file, operation), About(file), kLocking, -1)
FAILING(int, dup2, (int file, int to), (file, to), About(file), kDuplicating, -1)
FAILING(int, poll, (pollfd * files, nfds_t count, int wait), (files, count, wait), About(files->fd),
        kWaiting, -1)
FAILING(int, pthread_create,
        (pthread_t * thread, const pthread_attr_t* kind, void* (*begin)(void*), void* argument),
        (thread, kind, begin, argument), Subject(), kStarting, EAGAIN)

IN_PLACE_OF(int, fcntl, (int file, int command, long argument)) {
  const bool makesOne = command == F_DUPFD || command == F_DUPFD_CLOEXEC;
  if (makesOne && FaultOf("fcntl", About(file), kDuplicating) != kNone) return -1;
  return Real_fcntl()(file, command, argument);
}
