#include "io/outputfile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "support/tempdir.h"

namespace {

namespace fs = std::filesystem;

std::string Content(const fs::path& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(OutputFile, ReplacesAFileAtTheEndAndKeepsItPrivate) {
  const TempDir directory;
  const fs::path path = fs::path(directory.Path()) / "bins.json";
  std::ofstream(path) << "old";
  fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);

  MCBin::OutputFile file(path.string());
  file.Write("new");
  EXPECT_EQ(Content(path), "old");
  file.Commit();
  EXPECT_EQ(Content(path), "new");
  EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(directory.FileCount(), 1u);
}

}  // namespace
