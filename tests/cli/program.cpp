#include "cli/program.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace {

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

}  // namespace

void Program::Write(const std::string& name, const std::string& content) const {
  std::ofstream(fDirectory.Path() + "/" + name, std::ios::binary) << content;
}

void Program::Link(const std::string& name, const std::string& target) const {
  std::filesystem::create_directory_symlink(target, fDirectory.Path() + "/" + name);
}

std::string Program::Read(const std::string& name) const {
  return ReadFile(fDirectory.Path() + "/" + name);
}

std::vector<std::string> Program::Files() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(fDirectory.Path())) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

pid_t Program::Start(const std::vector<std::string>& arguments, int input) const {
  const std::string out = fOutputs.Path() + "/out";
  const std::string err = fOutputs.Path() + "/err";
  const pid_t process = fork();
  if (process < 0) throw std::runtime_error("cannot fork");
  if (process > 0) return process;

  std::vector<char*> words = {const_cast<char*>(MCBIN_PROGRAM)};
  for (const std::string& argument : arguments)
    words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);
  const bool ready =
      chdir(fDirectory.Path().c_str()) == 0 && dup2(input, STDIN_FILENO) >= 0 &&
      dup2(open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO) >= 0 &&
      dup2(open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO) >= 0 &&
      setenv("TMPDIR", fDirectory.Path().c_str(), 1) == 0 && setenv("LC_ALL", "C.UTF-8", 1) == 0;
  for (const int number : {SIGINT, SIGTERM}) signal(number, SIG_DFL);
  if (ready) execv(MCBIN_PROGRAM, words.data());
  _exit(99);
}

Program::Outcome Program::Wait(pid_t process) const {
  int status = 0;
  waitpid(process, &status, 0);
  const int exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
  return {exitCode, ReadFile(fOutputs.Path() + "/out"), ReadFile(fOutputs.Path() + "/err")};
}

Program::Outcome Program::Run(const std::vector<std::string>& arguments,
                              const std::string& input) const {
  const std::string path = fOutputs.Path() + "/in";
  std::ofstream(path, std::ios::binary) << input;
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  const pid_t process = Start(arguments, file);
  close(file);
  return Wait(process);
}

Program::Outcome Program::RunAndSignal(const std::vector<std::string>& arguments,
                                       int signalNumber) const {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("cannot make a pipe");
  const pid_t process = Start(arguments, ends[0]);
  // A pipe takes 64 KiB: when more was written, the program is reading.
  const std::string chunk(1 << 16, 'a');
  for (int i = 0; i < 3; ++i) {
    if (write(ends[1], chunk.data(), chunk.size()) < 0) break;
  }
  kill(process, signalNumber);
  const Outcome outcome = Wait(process);
  close(ends[0]);
  close(ends[1]);
  return outcome;
}
