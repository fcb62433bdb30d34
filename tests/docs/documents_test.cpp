// What the documents say about files of this project: quoted code, links, status codes.

#include <gtest/gtest.h>
#include <mcbinning/metadata/describe.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

const fs::path kRoot = MCBINNING_SOURCE_DIR;

std::string ReadFile(const fs::path& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

Lines ReadLines(const fs::path& path) {
  Lines lines;
  std::istringstream text(ReadFile(path));
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  return lines;
}

std::vector<fs::path> Documents() {
  std::vector<fs::path> documents{kRoot / "README.md", kRoot / "CONTRIBUTING.md",
                                  kRoot / "examples" / "README.md"};
  for (const auto& entry : fs::directory_iterator(kRoot / "docs")) {
    if (entry.path().extension() == ".md") documents.push_back(entry.path());
  }
  return documents;
}

// Without the blanks that all lines begin with.
Lines Unindented(Lines lines) {
  std::size_t indent = std::string::npos;
  for (const std::string& line : lines) indent = std::min(indent, line.find_first_not_of(' '));
  for (std::string& line : lines) line.erase(0, std::min(indent, line.size()));
  return lines;
}

// The lines between the comments "begin name" and "end name"; without a name the whole file.
Lines Region(const fs::path& file, const std::string& name) {
  const Lines lines = ReadLines(kRoot / file);
  if (name.empty()) return lines;
  const bool isScript = file.extension() == ".txt" || file.extension() == ".py";
  const std::string comment = isScript ? "# " : "// ";
  const auto marked = [&](const std::string& mark) {
    return std::find_if(lines.begin(), lines.end(), [&](const std::string& line) {
      return line.substr(std::min(line.find_first_not_of(' '), line.size())) == mark;
    });
  };
  const auto begin = marked(comment + "begin " + name);
  const auto end = marked(comment + "end " + name);
  if (begin >= end || end == lines.end()) return {"no such region"};
  return Unindented(Lines(begin + 1, end));
}

// A block that stands below "<!-- from FILE -->" or "<!-- from FILE: region -->" is a quotation.
TEST(Documents, QuoteCodeThatIsCompiled) {
  const std::regex origin("<!-- from ([^:]+)(?:: (.+))? -->");
  for (const fs::path& document : Documents()) {
    const Lines lines = ReadLines(document);
    for (std::size_t i = 1; i < lines.size(); ++i) {
      std::smatch from;
      const bool isQuotation = std::regex_match(lines[i - 1], from, origin);
      const std::string where = document.filename().string() + ':' + std::to_string(i + 1);
      if (lines[i] == "```cpp") {
        EXPECT_TRUE(isQuotation) << where << ": C++ from no file";
      }
      if (!isQuotation) continue;
      Lines quoted;
      while (++i < lines.size() && lines[i] != "```") quoted.push_back(lines[i]);
      EXPECT_EQ(quoted, Region(from[1].str(), from[2])) << where;
    }
  }
}

TEST(Documents, LinkToFilesThatExist) {
  const std::regex link(R"(\]\(([^)#:]+)(?:#[^)]*)?\))");
  for (const fs::path& document : Documents()) {
    const std::string text = ReadFile(document);
    for (std::sregex_iterator found(text.begin(), text.end(), link), end; found != end; ++found) {
      EXPECT_TRUE(fs::exists(document.parent_path() / (*found)[1].str()))
          << document.filename() << " links to " << (*found)[1];
    }
  }
}

std::set<std::string> Matches(const std::string& text, const std::string& pattern) {
  const std::regex regex(pattern, std::regex::multiline);
  std::set<std::string> matches;
  for (std::sregex_iterator found(text.begin(), text.end(), regex), end; found != end; ++found) {
    matches.insert((*found)[1]);
  }
  return matches;
}

TEST(Documents, ListEveryStatusCode) {
  std::string source;
  for (const auto& entry : fs::recursive_directory_iterator(kRoot / "src")) {
    if (entry.path().extension() == ".cpp" || entry.path().extension() == ".h") {
      source += ReadFile(entry.path());
    }
  }
  EXPECT_EQ(Matches(ReadFile(kRoot / "docs" / "status-codes.md"), "^\\| (1200\\d\\d) "),
            Matches(source, "\\b(1200\\d\\d)\\b"));
}

TEST(Documents, HaveTheWordsForEveryStatusCode) {
  std::set<std::string> sentences;
  for (int code = 1; code < 120100; ++code) {
    const std::string sentence = MCBinning::Describe(MCBinning::MCStatus(code, true));
    if (sentence != "unknown status") sentences.insert(std::to_string(code) + ": " + sentence);
  }
  EXPECT_EQ(Matches(ReadFile(kRoot / "docs" / "status-codes.md"), "^- (\\d+: .*)$"), sentences);
}

}  // namespace
