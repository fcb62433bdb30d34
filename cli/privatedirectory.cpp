#include "cli/privatedirectory.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "cli/displaytext.h"
#include "cli/inputerror.h"

namespace MCBin {

namespace {

std::string ChooseParent(const std::optional<std::string>& parent) {
  if (parent) return *parent;
  const char* const fromEnvironment = std::getenv("TMPDIR");
  const bool given = fromEnvironment != nullptr && *fromEnvironment != '\0';
  return given ? fromEnvironment : "/tmp";
}

[[noreturn]] void Refuse(const std::string& parent, int error) {
  throw InputError(
      fmt::format("cannot write temporary files in {}: {}; choose another directory "
                  "with --temp-dir",
                  QuotedText(parent), std::strerror(error)));
}

}  // namespace

PrivateDirectory::PrivateDirectory(const std::optional<std::string>& parent) {
  const std::string base = ChooseParent(parent);
  std::string path = fmt::format("{}/mcbin-{}-{}-XXXXXX", base, getuid(), getpid());
  if (mkdtemp(path.data()) == nullptr) Refuse(base, errno);
  fPath = path;

  // A full disk shows here, not after an hour.
  const std::string probe = fPath + "/probe";
  const int file = open(probe.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  const bool written = file >= 0 && write(file, "x", 1) == 1;
  const int error = errno;
  if (file >= 0) close(file);
  unlink(probe.c_str());
  if (!written) {
    rmdir(fPath.c_str());
    Refuse(base, error);
  }
}

PrivateDirectory::~PrivateDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(fPath, ignored);
}

}  // namespace MCBin
