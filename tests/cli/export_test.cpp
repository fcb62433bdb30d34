// What the tool adds to the texts of the library.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "cli/handmadebins.h"
#include "cli/program.h"

namespace {

using nlohmann::json;

TEST(Export, WritesAFileInsteadOfStandardOutput) {
  const Program program;
  EXPECT_EQ(program.Run("export --format python -o b.py -", kHandMadeBins).out, "");
  EXPECT_EQ(program.Read("b.py"), program.Run("export --format python -", kHandMadeBins).out);
}

TEST(Export, TellsOfAttributesWithoutBins) {
  const Program program;
  json bins = json::parse(kHandMadeBins);
  const auto fail = [](json& result) {
    result["status"] = {{"code", 120021}, {"severity", "error"}, {"text", ""}};
    result["cut_points"] = result["bin_weights"] = result["class_weights"] = json::array();
  };
  fail(bins["results"][1]);
  for (const char* command : {"export --format pmml -", "report -"}) {
    const auto outcome = program.Run(command, bins.dump());
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_NE(outcome.err.find("mcbin: without bins because of an error: 'c' (a temporary file"),
              std::string::npos)
        << outcome.err;
  }
  fail(bins["results"][0]);
  for (const char* command : {"export --format pmml -", "report -"}) {
    const auto outcome = program.Run(command, bins.dump());
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err.find("no attribute has bins"), std::string::npos) << outcome.err;
  }
}

}  // namespace
