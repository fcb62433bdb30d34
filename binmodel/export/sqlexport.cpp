#include <fmt/format.h>

#include <cfloat>
#include <cmath>
#include <vector>

#include "binmodel/export/exportmodel.h"
#include "binmodel/export/sqldialect.h"
#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"

namespace MCBinModel {

namespace {

// Columns are written with it: some databases take a quoted name that is no column for a text.
constexpr const char* kTableAlias = "t";

std::string Fill(const char* pattern, const std::string& column) {
  return fmt::format(fmt::runtime(pattern), column);
}

std::string Literal(const SqlDialect& dialect, const BinValue& value) {
  struct Writer {
    const SqlDialect& dialect;
    std::string operator()(std::monostate) const { return "NULL"; }
    std::string operator()(std::int64_t index) const { return std::to_string(index); }
    std::string operator()(double number) const { return FormatSqlNumber(dialect, number); }
    std::string operator()(const std::string& text) const { return FormatSqlText(dialect, text); }
  };
  return std::visit(Writer{dialect}, value);
}

// The CASE of one attribute.
class CaseWriter {
 public:
  CaseWriter(const ExportModel& model, const ExportColumn& column, const SqlDialect& dialect)
      : fModel(model),
        fColumn(column),
        fDialect(dialect),
        fReference(
            fmt::format("{}.{}", kTableAlias, QuoteIdentifier(dialect, column.attribute->name))),
        fIsText(column.attribute->kind == VariableKind::kStringCategorical),
        fIsTime(column.attribute->isTime),
        fOperand(fIsTime
                     ? fReference
                     : Fill(fIsText ? dialect.textOperand : dialect.numberOperand, fReference)) {}

  std::string Write() {
    AddBranch(fmt::format("{}", fmt::join(MissingConditions(), "\n      OR ")), fColumn.missing);
    const bool categorical = fColumn.attribute->IsCategorical();
    if (categorical) {
      AddCategoryBranches();
    } else {
      AddIntervalBranches();
    }
    return fmt::format("  CASE\n{}    ELSE {}\n  END AS {}", fBranches,
                       Literal(fDialect, categorical ? fColumn.missing : fColumn.values.back()),
                       QuoteIdentifier(fDialect, fColumn.name));
  }

 private:
  void AddBranch(const std::string& condition, const BinValue& value) {
    fBranches += fmt::format("    WHEN {} THEN {}\n", condition, Literal(fDialect, value));
  }

  // What the column is compared with: times at or below the number or, with `up`, from it on.
  std::string Border(double number, bool up) const {
    return fIsTime ? FormatSqlTime(fDialect, *fColumn.attribute, number, up)
                   : fDialect.formatNumber(number);
  }

  std::string IsIn(const std::vector<std::string>& literals) const {
    if (literals.size() == 1) return fmt::format("{} = {}", fOperand, literals.front());
    return fmt::format("{} IN ({})", fOperand, fmt::join(literals, ", "));
  }

  std::vector<std::string> MissingConditions() const {
    std::vector<std::string> conditions = {
        Fill(fIsText || fIsTime ? "{} IS NULL" : fDialect.isNoNumber, fReference)};
    std::vector<std::string> literals;
    if (fIsText) {
      for (const std::string& text : fColumn.attribute->missing.texts) {
        literals.push_back(FormatSqlText(fDialect, text));
      }
    } else {
      if (!fIsTime && *fDialect.isNaN != '\0')
        conditions.push_back(Fill(fDialect.isNaN, fReference));
      AddIntervalConditions(conditions);
      for (const double number : fColumn.missingNumbers) {
        if (std::isinf(number) && fDialect.infinity == nullptr) continue;
        if (fIsTime) {
          AddTimeCondition(number, literals, conditions);
        } else {
          literals.push_back(FormatSqlNumber(fDialect, number));
        }
      }
    }
    if (!literals.empty()) conditions.push_back(IsIn(literals));
    return conditions;
  }

  // Far from 1970 several microseconds are one number.
  void AddTimeCondition(double number, std::vector<std::string>& literals,
                        std::vector<std::string>& conditions) const {
    const std::string first = Border(number, true);
    const std::string last = Border(number, false);
    if (first == last) {
      literals.push_back(first);
    } else {
      conditions.push_back(fmt::format("{} BETWEEN {} AND {}", fOperand, first, last));
    }
  }

  // An open end takes in the infinity.
  void AddIntervalConditions(std::vector<std::string>& conditions) const {
    const auto& interval = fColumn.attribute->missing.interval;
    if (!interval) return;
    const bool openBelow = interval->low == -DBL_MAX;
    const bool openAbove = interval->high == DBL_MAX;
    const std::string low = openBelow ? "" : Border(interval->low, true);
    const std::string high = openAbove ? "" : Border(interval->high, false);
    if (openBelow && openAbove) {
      conditions.push_back(fReference + " IS NOT NULL");
    } else if (openBelow) {
      conditions.push_back(fmt::format("{} <= {}", fOperand, high));
    } else if (openAbove) {
      conditions.push_back(fmt::format("{} >= {}", fOperand, low));
    } else {
      conditions.push_back(fmt::format("{} BETWEEN {} AND {}", fOperand, low, high));
    }
  }

  void AddIntervalBranches() {
    const char* const comparison = fModel.rightClosed ? "<=" : "<";
    for (std::size_t bin = 0; bin < fColumn.cutPoints->size(); ++bin) {
      AddBranch(fmt::format("{} {} {}", fOperand, comparison,
                            Border((*fColumn.cutPoints)[bin], !fModel.rightClosed)),
                fColumn.values[bin]);
    }
  }

  void AddCategoryBranches() {
    const VariableInfo& attribute = *fColumn.attribute;
    for (const ExportColumn::CategoryBin& categories : fColumn.categoryBins) {
      std::vector<std::string> literals;
      for (const std::size_t code : categories.codes) {
        literals.push_back(fIsText ? FormatSqlText(fDialect, attribute.texts[code])
                                   : FormatSqlNumber(fDialect, attribute.numbers[code]));
      }
      AddBranch(IsIn(literals), fColumn.values[categories.bin]);
    }
  }

  const ExportModel& fModel;
  const ExportColumn& fColumn;
  const SqlDialect& fDialect;
  const std::string fReference;
  const bool fIsText;
  const bool fIsTime;
  const std::string fOperand;
  std::string fBranches;
};

}  // namespace

std::string ExportSql(const BinModel& bins, const std::vector<std::size_t>& results,
                      const ExportOptions& options, const std::string& dialectName,
                      const std::string& table) {
  const SqlDialect& dialect = FindSqlDialect(dialectName);
  const ExportModel model = MakeExportModel(bins, results, options);
  std::string query = fmt::format("SELECT\n  {}.*", kTableAlias);
  for (const ExportColumn& column : model.columns) {
    query += ",\n" + CaseWriter(model, column, dialect).Write();
  }
  std::vector<std::string> names = SplitTableName(table);
  for (std::string& name : names) name = QuoteIdentifier(dialect, name);
  return query + fmt::format("\nFROM {} AS {};\n", fmt::join(names, "."), kTableAlias);
}

}  // namespace MCBinModel
