#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "csv/csvreader.h"

namespace MCBin {

// The header row: the names of the columns, by position.
class ColumnNames {
 public:
  // Takes the names from the reader's current record. Throws Refusal when two columns
  // have the same name, or a name is not UTF-8 or holds control characters. Empty names are
  // allowed: such columns cannot be asked for.
  explicit ColumnNames(const CsvReader& header);

  // Takes them from the reader's first record, which it reads. Throws Refusal also when
  // there is none.
  static ColumnNames Read(CsvReader& reader);

  std::size_t GetCount() const { return fNames.size(); }
  const std::string& GetName(std::size_t position) const { return fNames[position]; }

  // The position of a column. Throws Refusal, with names that are similar, when there
  // is none of that name.
  std::size_t Find(const std::string& name) const;
  bool Contains(const std::string& name) const;

  // The positions of a column, or of all whose names match a pattern with * (any text) and ? (a
  // character). Throws Refusal when there is none.
  std::vector<std::size_t> FindAll(const std::string& nameOrPattern) const;
  bool IsPattern(const std::string& name) const;

 private:
  void CheckDuplicates(const std::string& where) const;
  [[noreturn]] void RefuseUnknown(const std::string& name) const;
  std::string Suggest(const std::string& name) const;

  std::string fFileName;
  std::vector<std::string> fNames;
};

}  // namespace MCBin
