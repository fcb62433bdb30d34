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

std::vector<std::string> WordsOf(const std::string& command) {
  std::istringstream text(command);
  std::vector<std::string> words;
  for (std::string word; std::getline(text, word, ' ');) {
    if (!word.empty()) words.push_back(word == "''" ? "" : word);
  }
  return words;
}

}  // namespace

Program::Program() {
  const std::filesystem::path directory = fDirectory.Path();
  std::filesystem::create_directory_symlink(MCBINNING_EXAMPLES_DIR, directory / "examples");
  std::filesystem::create_directory_symlink(MCBINNING_TEST_DATA_DIR, directory / "data");
}

void Program::Write(const std::string& name, const std::string& content) const {
  std::ofstream(fDirectory.Path() + "/" + name, std::ios::binary) << content;
}

std::string Program::Read(const std::string& name) const {
  return ReadFile(fDirectory.Path() + "/" + name);
}

std::vector<std::string> Program::Files() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(fDirectory.Path())) {
    if (!entry.is_symlink()) names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

pid_t Program::Start(const std::string& command, int input) const {
  const std::string out = fOutputs.Path() + "/out";
  const std::string err = fOutputs.Path() + "/err";
  const pid_t process = fork();
  if (process < 0) throw std::runtime_error("cannot fork");
  if (process > 0) return process;

  std::vector<std::string> words = WordsOf(command);
  std::vector<char*> arguments = {const_cast<char*>(MCBIN_PROGRAM)};
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const bool ready =
      chdir(fDirectory.Path().c_str()) == 0 && dup2(input, STDIN_FILENO) >= 0 &&
      dup2(open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO) >= 0 &&
      dup2(open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO) >= 0 &&
      setenv("TMPDIR", fDirectory.Path().c_str(), 1) == 0 && setenv("LC_ALL", "C.UTF-8", 1) == 0;
  for (const int number : {SIGINT, SIGTERM}) signal(number, SIG_DFL);
  if (ready) execv(MCBIN_PROGRAM, arguments.data());
  _exit(99);
}

Program::Outcome Program::Wait(pid_t process) const {
  int status = 0;
  waitpid(process, &status, 0);
  const int exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
  return {exitCode, ReadFile(fOutputs.Path() + "/out"), ReadFile(fOutputs.Path() + "/err")};
}

Program::Outcome Program::Run(const std::string& command, const std::string& input) const {
  const std::string path = fOutputs.Path() + "/in";
  std::ofstream(path, std::ios::binary) << input;
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  const pid_t process = Start(command, file);
  close(file);
  return Wait(process);
}

Program::Outcome Program::RunAndSignal(const std::string& command, int signalNumber) const {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("cannot make a pipe");
  const pid_t process = Start(command, ends[0]);
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
