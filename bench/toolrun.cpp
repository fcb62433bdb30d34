#include "toolrun.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <thread>

namespace bench {

namespace {

// Starts a program and returns its process.
pid_t Start(const std::vector<std::string>& arguments, const std::string& outputFile) {
  std::vector<std::string> copies = arguments;
  std::vector<char*> pointers;
  for (std::string& argument : copies) pointers.push_back(argument.data());
  pointers.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, outputFile.c_str(),
                                   O_WRONLY | O_CREAT | O_TRUNC, 0600);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child = -1;
  const int failure = posix_spawn(&child, pointers[0], &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (failure != 0) throw std::runtime_error("cannot start " + arguments.front());
  return child;
}

// Whether the program has ended; waits for that unless `options` is WNOHANG. Throws when it has
// failed.
bool HasEnded(pid_t child, int options, const std::string& name) {
  int status = 0;
  pid_t ended = -1;
  do {
    ended = waitpid(child, &status, options);
  } while (ended < 0 && errno == EINTR);
  if (ended < 0 || status != 0) throw std::runtime_error(name + " has failed");
  return ended == child;
}

// A file of values; whatever else a program keeps there is small.
bool HasFileOfValues(const std::string& directory) {
  constexpr std::uintmax_t kLeastBytes = 65536;
  std::error_code ignored;
  std::filesystem::recursive_directory_iterator entry(directory, ignored);
  for (; entry != std::filesystem::recursive_directory_iterator(); entry.increment(ignored)) {
    if (entry->is_regular_file(ignored) && entry->file_size(ignored) >= kLeastBytes) {
      return true;
    }
  }
  return false;
}

}  // namespace

void RunProgram(const std::vector<std::string>& arguments, const std::string& outputFile) {
  HasEnded(Start(arguments, outputFile), 0, arguments.front());
}

double RunFromFirstFile(const std::vector<std::string>& arguments, const std::string& directory) {
  using Clock = std::chrono::steady_clock;
  const pid_t child = Start(arguments, "/dev/null");
  while (!HasFileOfValues(directory)) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    if (HasEnded(child, WNOHANG, arguments.front())) {
      throw std::runtime_error(arguments.front() + " has made no file of values");
    }
  }
  const auto begin = Clock::now();
  HasEnded(child, 0, arguments.front());
  return std::chrono::duration<double>(Clock::now() - begin).count();
}

std::string FindTool() {
#ifdef MCBIN_PROGRAM
  if (access(MCBIN_PROGRAM, X_OK) == 0) return MCBIN_PROGRAM;
#endif
  return "";
}

}  // namespace bench
