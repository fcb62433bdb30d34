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
  std::filesystem::create_directory_symlink(MCBINNING_TEST_DATA_DIR "/..", directory / "tests");
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

pid_t Program::Start(const std::string& command, int input, const Setting& setting) const {
  const pid_t process = fork();
  if (process < 0) throw std::runtime_error("cannot fork");
  if (process > 0) return process;

  std::vector<std::string> words = WordsOf(command);
  std::vector<char*> arguments = {const_cast<char*>(MCBIN_PROGRAM)};
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const auto openAs = [](int number, const std::string& path, int flags) {
    return dup2(open(path.c_str(), flags | O_CLOEXEC, 0600), number) >= 0;
  };
  const auto capture = [&](int number, const char* name) {
    return openAs(number, fOutputs.Path() + "/" + name, O_WRONLY | O_CREAT | O_TRUNC);
  };
  const bool ready =
      chdir(fDirectory.Path().c_str()) == 0 &&
      (setting.input.empty() ? dup2(input, STDIN_FILENO) >= 0
                             : openAs(STDIN_FILENO, setting.input, O_RDONLY)) &&
      (setting.output.empty() ? capture(STDOUT_FILENO, "out")
                              : openAs(STDOUT_FILENO, setting.output, O_WRONLY | O_APPEND)) &&
      capture(STDERR_FILENO, "err") && setenv("TMPDIR", fDirectory.Path().c_str(), 1) == 0 &&
      setenv("LC_ALL", "C.UTF-8", 1) == 0;
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
  Setting setting;
  setting.input = path;
  return Run(command, setting);
}

Program::Outcome Program::Run(const std::string& command, const Setting& setting) const {
  return Wait(Start(command, STDIN_FILENO, setting));
}
