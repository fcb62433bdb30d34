#include "binmodel/model/statustext.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <string>

namespace {

using MCBinning::MCStatus;

// The list "In words" of docs/status-codes.md.
std::map<int, std::string> DocumentedSentences() {
  const std::regex item("- (\\d+): (.*)");
  std::map<int, std::string> sentences;
  std::ifstream file(MCBINNING_DOCS_DIR "/status-codes.md");
  std::smatch match;
  for (std::string line; std::getline(file, line);) {
    if (std::regex_match(line, match, item)) sentences[std::stoi(match[1])] = match[2];
  }
  return sentences;
}

TEST(StatusText, HasTheDocumentedSentenceOfEveryCode) {
  std::map<int, std::string> sentences;
  for (int code = 1; code < 120100; ++code) {
    const std::string sentence = MCBinModel::DescribeStatus(MCStatus(code, true));
    if (sentence != "unknown status") sentences[code] = sentence;
  }
  EXPECT_EQ(sentences, DocumentedSentences());
}

TEST(StatusText, ASeverityIsNamedWhateverTheCode) {
  EXPECT_STREQ(MCBinModel::DescribeSeverity(MCStatus()), "ok");
  EXPECT_STREQ(MCBinModel::DescribeSeverity(MCStatus(120002, true)), "warning");
  EXPECT_STREQ(MCBinModel::DescribeSeverity(MCStatus(120002, false)), "error");
}

}  // namespace
