// Bins in other languages, as text; exportcheck.py runs them where there is an engine.

#include <gtest/gtest.h>

#include <ostream>
#include <regex>
#include <string>
#include <vector>

#include "cli/program.h"
#include "support/rowname.h"

namespace {

using Words = std::vector<std::string>;

const char kBins[] = R"({
  "format": "mcbin-bins", "version": 1, "tool": "", "algorithm": "supervised", "closed": "left",
  "settings": {"prebin_above": 0, "prebins": 2, "small_bins": 0},
  "source": {"name": "", "delimiter": ",", "na": ["-1", "inf"], "records": 8,
             "dropped": {"missing_weight": 0, "zero_weight": 0, "weight_rounded_to_zero": 0}},
  "attributes": [
    {"name": "a`\"", "kind": "continuous",
     "user_missing": {"values": [9], "interval": {"low": 90}}},
    {"name": "c", "kind": "string-categorical", "categories": ["it's", "\\"],
     "user_missing": {"values": ["\u0001"]}}],
  "targets": [{"name": "t", "kind": "string-categorical", "categories": ["yes", "no"]}],
  "results": [
    {"attribute": "a`\"", "target": "t", "status": {"code": 0, "severity": "ok", "text": "ok"},
     "cut_points": [0.1, 1e300], "bin_weights": [4, 2, 2],
     "class_weights": [[3, 1], [0, 2], [1, 1]],
     "valid_weight": 8, "weight_with_missing": 8, "distinct_values": 5},
    {"attribute": "c", "target": "t", "status": {"code": 0, "severity": "ok", "text": "ok"},
     "cut_points": [1], "bin_weights": [4, 4], "class_weights": [[2, 2], [2, 2]],
     "valid_weight": 8, "weight_with_missing": 8, "distinct_values": 2}]})";

Program::Outcome Export(const Words& options) {
  const Program program;
  program.Write("bins.json", kBins);
  Words arguments = {"export", "bins.json"};
  arguments.insert(arguments.end(), options.begin(), options.end());
  return program.Run(arguments);
}

struct DialectExample {
  const char* name;
  Words options;
  std::string query;
};
void PrintTo(const DialectExample& row, std::ostream* os) { *os << row.name; }

class DialectTest : public testing::TestWithParam<DialectExample> {};

TEST_P(DialectTest, WritesTheQuery) {
  Words options = {"--format", "sql", "--dialect"};
  options.insert(options.end(), GetParam().options.begin(), GetParam().options.end());
  const auto outcome = Export(options);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out, GetParam().query);
}

// The dialects that no test can run.
INSTANTIATE_TEST_SUITE_P(Dialects, DialectTest,
                         testing::Values(DialectExample{"Ansi",
                                                        {"ansi", "--table", "s.\"a.\"\"b\""},
                                                        R"(SELECT
  t.*,
  CASE
    WHEN t."a`""" IS NULL
      OR t."a`""" <> t."a`"""
      OR t."a`""" >= 90e0
      OR t."a`""" IN (9e0, -1e0, -1.7976931348623157e+308) THEN NULL
    WHEN t."a`""" < 0.1e0 THEN 0
    WHEN t."a`""" < 1e+300 THEN 1
    ELSE 2
  END AS "a`""_bin",
  CASE
    WHEN t."c" IS NULL
      OR t."c" = ')"
                                                        "\x01"
                                                        R"(' THEN NULL
    WHEN t."c" = 'it''s' THEN 0
    WHEN t."c" = '\' THEN 1
    ELSE NULL
  END AS "c_bin"
FROM "s"."a.""b" AS t;
)"},
                                         DialectExample{"Mysql",
                                                        {"mysql", "--table", "x", "--as", "label",
                                                         "--missing-as", "?", "--suffix", "2"},
                                                        R"(SELECT
  t.*,
  CASE
    WHEN t.`a``"` IS NULL
      OR t.`a``"` >= 90e0
      OR t.`a``"` IN (9e0, -1e0, -1.7976931348623157e+308) THEN '?'
    WHEN t.`a``"` < 0.1e0 THEN '(-inf, 0.1)'
    WHEN t.`a``"` < 1e+300 THEN '[0.1, 1e+300)'
    ELSE '[1e+300, +inf)'
  END AS `a``"2`,
  CASE
    WHEN t.`c` IS NULL
      OR CAST(CONVERT(t.`c` USING utf8mb4) AS BINARY) = ')"
                                                        "\x01"
                                                        R"(' THEN '?'
    WHEN CAST(CONVERT(t.`c` USING utf8mb4) AS BINARY) = 'it\'s' THEN '{it\'s}'
    WHEN CAST(CONVERT(t.`c` USING utf8mb4) AS BINARY) = '\\' THEN '{\\}'
    ELSE '?'
  END AS `c2`
FROM `x` AS t;
)"},
                                         DialectExample{"Spark",
                                                        {"spark", "--table", "x", "--as", "woe"},
                                                        R"(SELECT
  t.*,
  CASE
    WHEN t.`a``"` IS NULL
      OR isnan(t.`a``"`)
      OR t.`a``"` >= 90e0
      OR t.`a``"` IN (9e0, -1e0, double('Infinity'), -1.7976931348623157e+308) THEN NULL
    WHEN t.`a``"` < 0.1e0 THEN 1.0986122886681098e0
    WHEN t.`a``"` < 1e+300 THEN double('-Infinity')
    ELSE 0e0
  END AS `a``"_bin`,
  CASE
    WHEN t.`c` IS NULL
      OR CAST(t.`c` AS STRING) = ')"
                                                        "\x01"
                                                        R"(' THEN NULL
    WHEN CAST(t.`c` AS STRING) = 'it\'s' THEN 0e0
    WHEN CAST(t.`c` AS STRING) = '\\' THEN 0e0
    ELSE NULL
  END AS `c_bin`
FROM `x` AS t;
)"}),
                         RowName);

struct Refusal {
  const char* name;
  Words options;
  int exitCode;
  std::string message;
};
void PrintTo(const Refusal& row, std::ostream* os) { *os << row.name; }

class ExportRefusalTest : public testing::TestWithParam<Refusal> {};

TEST_P(ExportRefusalTest, SaysWhy) {
  const auto outcome = Export(GetParam().options);
  EXPECT_EQ(outcome.exitCode, GetParam().exitCode);
  EXPECT_EQ(outcome.out, "");
  EXPECT_NE(outcome.err.find(GetParam().message), std::string::npos) << outcome.err;
}

INSTANTIATE_TEST_SUITE_P(
    Refused, ExportRefusalTest,
    testing::Values(
        Refusal{"NoFormat", {}, 2, "--format is required"},
        Refusal{"NoTable", {"--format", "sql"}, 2, "needs --table"},
        Refusal{"UnknownDialect", {"--format", "sql", "--dialect", "x"}, 2, "--dialect"},
        Refusal{"DialectOfPmml", {"--format", "pmml", "--dialect", "ansi"}, 2, "belong to"},
        Refusal{"TableName", {"--format", "sql", "--table", "s."}, 2, "write NAME or SCHEMA.NAME"},
        Refusal{"TextAmongIndexes", {"--format", "python", "--missing-as", "?"}, 2, "such as -1"},
        Refusal{"TextAmongNumbers",
                {"--format", "python", "--as", "woe", "--missing-as", "?"},
                2,
                "such as 0"},
        Refusal{"OverTheBinFile", {"--format", "python", "-o", "./bins.json"}, 2, "overwritten"},
        Refusal{"NameTaken", {"--format", "python", "--suffix", ""}, 1, "choose another --suffix"},
        Refusal{"UnknownTarget", {"--format", "python", "--target", "u"}, 1, "targets are 't'"},
        Refusal{"NoInfinity",
                {"--format", "sql", "--dialect", "mysql", "--table", "x", "--as", "woe"},
                1,
                "is infinite, which --dialect mysql cannot say"},
        Refusal{"NotXml", {"--format", "pmml"}, 1, "a control character"},
        Refusal{"FullDisk", {"--format", "python", "-o", "/dev/full"}, 1, "No space left"}),
    RowName);

TEST(Export, WritesAFileInsteadOfStandardOutput) {
  const Program program;
  program.Write("bins.json", kBins);
  EXPECT_EQ(program.Run({"export", "--format", "python", "-o", "b.py", "bins.json"}).out, "");
  EXPECT_EQ(program.Read("b.py"), program.Run({"export", "--format", "python", "-"}, kBins).out);
}

TEST(Export, WarnsOfWhatPmmlCannotSay) {
  const Program program;
  program.Write("bins.json", std::regex_replace(kBins, std::regex(R"(\\u0001)"), ""));
  const auto outcome = program.Run({"export", "--format", "pmml", "bins.json"});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.err,
            "mcbin: column 'a`\"': PMML cannot say that the interval 90: is missing; its values "
            "get a bin\n");
}

}  // namespace
