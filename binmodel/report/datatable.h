#pragma once

#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "binmodel/report/binreport.h"

namespace MCBinModel {

// Records of named fields, for programs. A field that a record lacks is empty, or null.
//
//   CSV, TSV   names and texts are printable (see PrintableText()); inf and -inf; a list is
//   separated
//              by blanks
//   JSON       an array of objects with all fields; infinite numbers are texts, "inf" and "-inf"
class DataTable {
 public:
  using Field = std::variant<std::monostate, double, std::string, std::vector<double>,
                             std::vector<std::string>>;

  // Begins the next record.
  void AddRecord() { fRecords.emplace_back(); }

  // A field of the record that was begun last. Columns stand in the order of their first fields.
  void Set(const std::string& column, Field field);
  void Set(const std::string& column, const std::optional<double>& measure);

  // Requires a format for programs.
  void Write(TableFormat format, const TextSink& write) const;

 private:
  using Record = std::vector<Field>;  // by column; may be shorter

  void WriteLines(char delimiter, const TextSink& write) const;
  void WriteJson(const TextSink& write) const;

  std::vector<std::string> fColumns;
  std::map<std::string, std::size_t> fColumnAt;
  std::vector<Record> fRecords;
};

}  // namespace MCBinModel
