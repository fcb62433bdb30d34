#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "../apply/columnview.h"
#include "../model/binmodelexport.h"
#include "../model/variableinfo.h"
#include "columnsource.h"

namespace MCBinModel {

// Columns in the caller's memory as the source of a run.
//
//   Owner     numbers and codes stay the caller's and must live as long as this object is read;
//             of categories the codes are kept here, two bytes a record.
//   Missing   what the view says is not valid, NaN, MCMV::gMissingValue, a code below 0.
//   Threads   adding belongs to one thread and ends before the run begins.
class MCBINMODEL_API MemoryColumns final : public ColumnSource {
 public:
  // As many records, without a column.
  explicit MemoryColumns(std::size_t recordCount) : fRecordCount(recordCount), fColumns() {}

  // Adds numbers, weights or the codes of categories and answers the column's index. A whole
  // number beyond 2^53 is rounded to a double.
  std::size_t Add(const ColumnView<double>& view);
  std::size_t Add(const ColumnView<float>& view);
  std::size_t Add(const ColumnView<std::int32_t>& view);
  std::size_t Add(const ColumnView<std::int64_t>& view);

  // Adds any other column, such as one that lies in pieces, and answers its index. `read` writes
  // the values of the records [first, first + count), as ColumnSource has them; several threads may
  // call it at the same time.
  using ReadValues = std::function<void(std::size_t first, std::size_t count, double* values)>;
  std::size_t AddColumn(ReadValues read);

  // Codes a column of categories and answers its index. The variable becomes categorical: the
  // categories that it has keep their codes, others follow in the order of their first record.
  // What its definition says is missing is no category. Throws Refusal when there are more than
  // kMostCategories.
  std::size_t AddCategories(const ColumnView<double>& view, VariableInfo& variable);
  std::size_t AddCategories(const ColumnView<std::string_view>& view, VariableInfo& variable);

  // As the source of a run.
  std::uint64_t GetRecordCount() const override { return fRecordCount; }
  std::size_t GetRecordsPerBlock() const override;

  // Throws std::out_of_range for a column that was not added.
  void Read(std::size_t block, std::size_t column, double* values) const override;

 private:
  const std::size_t fRecordCount;
  std::vector<ReadValues> fColumns;
};

}  // namespace MCBinModel
