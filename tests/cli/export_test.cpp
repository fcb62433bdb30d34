// Bins in other languages, as text; exportcheck.py runs them where there is an engine.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <vector>

#include "cli/handmadebins.h"
#include "cli/program.h"
#include "support/rowname.h"

namespace {

using nlohmann::json;

// The bins with names and texts that every dialect writes in its own way.
std::string OddBins() {
  json bins = json::parse(kHandMadeBins);
  bins["closed"] = "left";
  bins["source"]["na"] = {"-1", "inf"};
  bins["attributes"][0]["name"] = bins["results"][0]["attribute"] = "a`\"";
  bins["attributes"][1]["categories"] = {"it's", "\\"};
  bins["attributes"][1]["user_missing"]["values"] = {"\x01"};
  bins["results"][0]["cut_points"] = {0.1, 1e300};
  bins["results"][1]["cut_points"] = {1};
  return bins.dump();
}

struct DialectExample {
  const char* name;
  const char* options;
  std::vector<const char*> parts;  // of the query, in order
};
void PrintTo(const DialectExample& row, std::ostream* os) { *os << row.name; }

class DialectTest : public testing::TestWithParam<DialectExample> {};

TEST_P(DialectTest, WritesTheQuery) {
  const Program program;
  const std::string command = "export - --format sql --table s.\"a.\"\"b\" --dialect ";
  const auto outcome = program.Run(command + GetParam().options, OddBins());
  EXPECT_EQ(outcome.err, "");
  std::size_t end = 0;
  for (const std::string part : GetParam().parts) {
    const std::size_t begin = outcome.out.find(part, end);
    ASSERT_NE(begin, std::string::npos) << part << "\n" << outcome.out;
    end = begin + part.size();
  }
}

// The dialects that no test can run: the first as a whole, then what the others write otherwise.
const DialectExample kDialects[] = {
    {"Ansi",
     "ansi",
     {"SELECT\n"
      "  t.*,\n"
      "  CASE\n"
      "    WHEN t.\"a`\"\"\" IS NULL\n"
      "      OR t.\"a`\"\"\" <> t.\"a`\"\"\"\n"
      "      OR t.\"a`\"\"\" >= 90e0\n"
      "      OR t.\"a`\"\"\" IN (9e0, -1e0, -1.7976931348623157e+308) THEN NULL\n"
      "    WHEN t.\"a`\"\"\" < 0.1e0 THEN 0\n"
      "    WHEN t.\"a`\"\"\" < 1e+300 THEN 1\n"
      "    ELSE 2\n"
      "  END AS \"a`\"\"_bin\",\n"
      "  CASE\n"
      "    WHEN t.\"c\" IS NULL\n"
      "      OR t.\"c\" = '\x01' THEN NULL\n"
      "    WHEN t.\"c\" = 'it''s' THEN 0\n"
      "    WHEN t.\"c\" = '\\' THEN 1\n"
      "    ELSE NULL\n"
      "  END AS \"c_bin\"\n"
      "FROM \"s\".\"a.\"\"b\" AS t;\n"}},
    {"Mysql",
     "mysql --as label --missing-as ?",
     {"WHEN t.`a``\"` IS NULL\n      OR t.`a``\"` >= 90e0\n",
      " IN (9e0, -1e0, -1.7976931348623157e+308) THEN '?'\n",
      " WHEN t.`a``\"` < 0.1e0 THEN '(-inf, 0.1)'\n", " ELSE '[1e+300, +inf)'\n",
      " OR CAST(CONVERT(t.`c` USING utf8mb4) AS BINARY) = '\x01' THEN '?'\n",
      " WHEN CAST(CONVERT(t.`c` USING utf8mb4) AS BINARY) = 'it\\'s' THEN '{it\\'s}'\n",
      " = '\\\\' THEN '{\\\\}'\n    ELSE '?'\n", "FROM `s`.`a.\"b` AS t;\n"}},
    {"Spark",
     "spark --as woe",
     {" OR isnan(t.`a``\"`)\n",
      " IN (9e0, -1e0, double('Infinity'), -1.7976931348623157e+308) THEN NULL\n",
      " < 0.1e0 THEN 1.0986122886681098e0\n", " < 1e+300 THEN double('-Infinity')\n    ELSE 0e0\n",
      " WHEN CAST(t.`c` AS STRING) = 'it\\'s' THEN 0e0\n", " = '\\\\' THEN 0e0\n"}},
};

INSTANTIATE_TEST_SUITE_P(Dialects, DialectTest, testing::ValuesIn(kDialects), RowName);

TEST(Export, WritesAFileInsteadOfStandardOutput) {
  const Program program;
  EXPECT_EQ(program.Run("export --format python -o b.py -", kHandMadeBins).out, "");
  EXPECT_EQ(program.Read("b.py"), program.Run("export --format python -", kHandMadeBins).out);
}

TEST(Export, WarnsOfWhatPmmlCannotSay) {
  const Program program;
  const auto outcome = program.Run("export --format pmml -", kHandMadeBins);
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err,
            "mcbin: column 'a': PMML cannot say that the interval 90: is missing; its values get a "
            "bin\n");
}

}  // namespace
