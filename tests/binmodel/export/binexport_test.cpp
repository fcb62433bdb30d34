// Bins in other languages, as text; exportcheck.py runs them where there is an engine.

#include "binmodel/export/binexport.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include "binmodel/model/refusal.h"
#include "binmodel/samplebins.h"
#include "support/rowname.h"

namespace {

using MCBinModel::BinForm;
using MCBinModel::BinModel;
using MCBinModel::ExportOptions;
using MCBinModel::ExportSql;
using MCBinModel::RefusalCode;

const std::vector<std::size_t> kBoth = {0, 1};

// Bins with names and texts that every dialect writes in its own way: of numbers, and of
// categories.
BinModel OddBins() {
  BinModel model =
      SampleBins({"yes", "no"}, {{"a`\"", {{3, 1}, {0, 2}, {1, 1}}}, {"c", {{2, 2}, {2, 2}}}});
  model.settings.rightClosed = false;
  model.source.missingTexts = {"-1", "inf"};
  model.attributes[0].missing.numbers = {9};
  model.attributes[0].missing.interval = {90, std::numeric_limits<double>::max()};
  model.results[0].cutPoints = {0.1, 1e300};
  model.attributes[1].kind = MCBinModel::VariableKind::kStringCategorical;
  model.attributes[1].texts = {"it's", "\\"};
  model.attributes[1].missing.texts = {"\n\x1B\u0085"};
  return model;
}

struct DialectExample {
  const char* name;
  const char* dialect;
  ExportOptions options;
  std::vector<const char*> parts;  // of the query, in order
};
void PrintTo(const DialectExample& row, std::ostream* os) { *os << row.name; }

class DialectTest : public testing::TestWithParam<DialectExample> {};

TEST_P(DialectTest, WritesTheQuery) {
  const std::string query =
      ExportSql(OddBins(), kBoth, GetParam().options, GetParam().dialect, "s.\"a.\"\"b\"");
  std::size_t end = 0;
  for (const std::string part : GetParam().parts) {
    const std::size_t begin = query.find(part, end);
    ASSERT_NE(begin, std::string::npos) << part << "\n" << query;
    end = begin + part.size();
  }
}

// The dialect that no engine runs as a whole, then what the others write otherwise.
const DialectExample kDialects[] = {
    {"Ansi",
     "ansi",
     {},
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
      "      OR t.\"c\" = U&'\n\\001B\\0085' THEN NULL\n"
      "    WHEN t.\"c\" = 'it''s' THEN 0\n"
      "    WHEN t.\"c\" = '\\' THEN 1\n"
      "    ELSE NULL\n"
      "  END AS \"c_bin\"\n"
      "FROM \"s\".\"a.\"\"b\" AS t;\n"}},
    {"Mysql",
     "mysql",
     {BinForm::kLabel, "_bin", "?"},
     {"WHEN t.`a``\"` IS NULL OR t.`a``\"` NOT REGEXP '^ *",
      " *$'\n      OR (t.`a``\"` + 0e0) >= 90e0\n",
      " IN (9e0, -1e0, -1.7976931348623157e+308) THEN '?'\n",
      " WHEN (t.`a``\"` + 0e0) < 0.1e0 THEN '(-inf, 0.1)'\n", " ELSE '[1e+300, +inf)'\n",
      " OR CAST(CONVERT(t.`c` USING utf8mb4) AS BINARY) = CONCAT('\n', CHAR(27 USING utf8mb4), "
      "CHAR(49797 USING utf8mb4)) THEN '?'\n",
      " WHEN CAST(CONVERT(t.`c` USING utf8mb4) AS BINARY) = 'it\\'s' THEN '{it\\'s}'\n",
      " = '\\\\' THEN '{\\\\}'\n    ELSE '?'\n", "FROM `s`.`a.\"b` AS t;\n"}},
    {"Spark",
     "spark",
     {BinForm::kWeightOfEvidence, "_bin", std::nullopt},
     {" OR isnan(CAST(t.`a``\"` AS DOUBLE))\n",
      " IN (9e0, -1e0, double('Infinity'), -1.7976931348623157e+308) THEN NULL\n",
      " < 0.1e0 THEN 1.0986122886681098e0\n", " < 1e+300 THEN double('-Infinity')\n    ELSE 0e0\n",
      " OR CAST(t.`c` AS STRING) = '\n\\u001B\\u0085' THEN NULL\n",
      " WHEN CAST(t.`c` AS STRING) = 'it\\'s' THEN 0e0\n", " = '\\\\' THEN 0e0\n"}},
    {"Duckdb", "duckdb", {}, {" OR CAST(t.\"c\" AS VARCHAR) = ('\n' || chr(27) || chr(133)) THEN"}},
    {"Postgresql", "postgresql", {}, {" = E'\n\\u001B\\u0085' THEN"}},
};

INSTANTIATE_TEST_SUITE_P(Dialects, DialectTest, testing::ValuesIn(kDialects), RowName);

RefusalCode CodeOfSql(const BinModel& model, const ExportOptions& options, const char* dialect,
                      const char* table) {
  try {
    ExportSql(model, kBoth, options, dialect, table);
  } catch (const MCBinModel::Refusal& refusal) {
    EXPECT_EQ(std::string(refusal.what()).find("--"), std::string::npos) << refusal.what();
    return refusal.GetCode();
  }
  ADD_FAILURE() << "nothing was refused";
  return {};
}

TEST(Export, RefusesWhatCannotBeSaid) {
  const auto form = BinForm::kWeightOfEvidence;
  const BinModel model = OddBins();
  EXPECT_EQ(CodeOfSql(model, {}, "ansi", "s."), RefusalCode::kTableName);
  EXPECT_EQ(CodeOfSql(model, {}, "oracle", "x"), RefusalCode::kInput);
  EXPECT_EQ(CodeOfSql(model, {BinForm::kIndex, "_bin", "?"}, "ansi", "x"),
            RefusalCode::kMissingNotWhole);
  EXPECT_EQ(CodeOfSql(model, {form, "_bin", "?"}, "ansi", "x"), RefusalCode::kMissingNotNumber);
  EXPECT_EQ(CodeOfSql(model, {BinForm::kIndex, "", {}}, "ansi", "x"), RefusalCode::kColumnExists);
  EXPECT_EQ(CodeOfSql(model, {form, "_bin", {}}, "mysql", "x"), RefusalCode::kNoInfinity);
}

TEST(Export, WritesNoControlCharacterOfAName) {
  BinModel model = OddBins();
  model.attributes[1].name = "c\\\"\x1B[2J\u0085\u202E";
  for (const char* dialect : {"sqlite", "mysql", "duckdb", "spark"}) {
    EXPECT_EQ(CodeOfSql(model, {}, dialect, "x"), RefusalCode::kInput) << dialect;
  }
  EXPECT_NE(ExportSql(model, {1}, {}, "postgresql", "x").find("U&\"c\\\\\"\"\\001B[2J\\0085"),
            std::string::npos);
  EXPECT_THROW(ExportPmml(model, {1}, {}), MCBinModel::Refusal);
  EXPECT_NE(ExportPython(model, {1}, {}).find("\"c\\\\\\\"\\x1b[2J\\x85\\U0000202e\""),
            std::string::npos);
}

}  // namespace
