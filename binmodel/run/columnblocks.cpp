#include "binmodel/run/columnblocks.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"
#include "common/missing.h"

namespace MCBinModel {

namespace {

bool AllFinite(const double* values, std::size_t count) {
  bool allFinite = true;
  for (std::size_t i = 0; i < count; ++i) {
    allFinite &= std::abs(values[i]) <= std::numeric_limits<double>::max();
  }
  return allFinite;
}

}  // namespace

ColumnBlocks::ColumnBlocks(const ColumnSource& source, std::vector<SourceColumn> columns)
    : fSource(source),
      fColumns(std::move(columns)),
      fRecordCount(source.GetRecordCount()),
      fStride(static_cast<std::size_t>(
          std::min<std::uint64_t>(source.GetRecordsPerBlock(), fRecordCount))),
      fValues(fColumns.size() * fStride) {}

std::size_t ColumnBlocks::ReadNext() {
  const auto count =
      static_cast<std::size_t>(std::min<std::uint64_t>(fStride, fRecordCount - fRecordsRead));
  if (count == 0) return 0;
  double* values = fValues.data();
  for (const SourceColumn& column : fColumns) {
    fSource.Read(fBlocksRead, column.column, values);
    if (!AllFinite(values, count)) Clean(column, values, count);
    values += fStride;
  }
  ++fBlocksRead;
  fRecordsRead += count;
  return count;
}

// A missing value that is itself no finite number is one that the host has chosen.
void ColumnBlocks::Clean(const SourceColumn& column, double* values, std::size_t count) const {
  const bool isContinuous = column.variable != nullptr && !column.variable->IsCategorical();
  for (std::size_t i = 0; i < count; ++i) {
    if (std::isnan(values[i])) values[i] = MCMV::Missing();
    if (!isContinuous || !std::isinf(values[i]) || MCMV::IsMissing(values[i])) continue;
    const std::string& name = column.variable->name;
    throw Refusal(RefusalCode::kInfiniteNumber,
                  {fmt::format("record {}", fRecordsRead + i + 1), name, FormatNumber(values[i])},
                  fmt::format("the number {} in column {} is infinite", FormatNumber(values[i]),
                              QuotedText(name)));
  }
}

}  // namespace MCBinModel
