#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "binmodel/apply/bincounter.h"
#include "csv/columnnames.h"
#include "csv/csvreader.h"
#include "csv/missingtexts.h"
#include "csv/recordpass.h"

namespace MCBin {

// Counts the cases of every bin among the records after the header, which is behind the reader.
// `results` are indexes into the model's; without `weight` every record counts once. `notes` gets
// a line for each column with categories that the bin file does not know.
//
// Throws Refusal when there is nothing to count (RefusalCode::kNoRecords): no record, none with a
// usable weight, or none with a known class of the target; for a column that is not there and for
// what the reader, the weights and the columns refuse; Interrupt::Requested when the user stops it.
MCBinModel::Recount CountRecords(const MCBinModel::BinModel& model,
                                 const std::vector<std::size_t>& results, const ColumnNames& names,
                                 const std::optional<MCBinModel::WeightInfo>& weight,
                                 const MissingTexts& missingTexts, CsvReader& reader,
                                 const ReadProgress& progress, std::vector<std::string>& notes);

}  // namespace MCBin
