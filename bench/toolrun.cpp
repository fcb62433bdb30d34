#include "toolrun.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

namespace bench {

void RunProgram(const std::vector<std::string>& arguments, const std::string& outputFile) {
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

  int status = 0;
  if (waitpid(child, &status, 0) != child || status != 0) {
    throw std::runtime_error(arguments.front() + " has failed");
  }
}

std::string FindTool() {
#ifdef MCBIN_PROGRAM
  if (access(MCBIN_PROGRAM, X_OK) == 0) return MCBIN_PROGRAM;
#endif
  return "";
}

}  // namespace bench
