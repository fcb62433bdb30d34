#pragma once

#include <nanobind/nanobind.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "column.h"

namespace MCBinPython {

// The columns of whatever a caller binned, where they lie: each adding operation keeps what holds
// their memory and checks that they are as long as those before. Belongs to the interpreter; while
// nothing is added, reading needs no lock of it.
class Table {
 public:
  // Numbers of an object with the buffer protocol: one column, or one for each name of an array of
  // rows. The lowest of NumPy's times is missing; those of moments count a unit: "D", "s", "ms",
  // "us", "ns", or "" for others. Throws nanobind::type_error for what is no plain number.
  void AddNumbers(const std::string& name, nanobind::handle buffer, bool isTime,
                  const std::string& unit);
  void AddMatrix(const std::vector<std::string>& names, nanobind::handle buffer);

  // A list of str, with None where one is missing.
  void AddTexts(const std::string& name, nanobind::list texts);

  // Whole numbers that are indexes of a list of str or of float; one below 0 stands for a missing
  // value.
  void AddDictionary(const std::string& name, nanobind::handle indexes, nanobind::list values,
                     bool isOrdered);

  // Arrow capsules, which are moved from: a stream, or a schema and an array. They are the column
  // `name`, or without a name a table, whose columns are the fields of a struct. Of a stream the
  // interpreter's lock is released while batches are made.
  void AddArrowStream(nanobind::handle stream, const std::string& name);
  void AddArrowArray(nanobind::handle schema, nanobind::handle array, const std::string& name);

  const std::vector<Column>& GetColumns() const { return fColumns; }
  std::size_t GetLength() const { return fLength; }

 private:
  void Add(Column column);

  std::vector<Column> fColumns;
  std::vector<std::shared_ptr<const void>> fOwners;
  std::size_t fLength = 0;
};

}  // namespace MCBinPython
