#pragma once

#include <string>
#include <vector>

#include "binmodel/run/binrun.h"
#include "csv/columnnote.h"
#include "csv/columnrequest.h"
#include "csv/inputscan.h"
#include "csv/numberformat.h"
#include "metadata/ibinvariable.h"

namespace MCBin {

// The columns of the files as variables: decides each one's kind by what the pass over the file
// found. Columns are those of the value file.
//
// Columns that cannot be binned are left out with a note when the user did not ask for
// them by name. Throws Refusal for a column asked for that cannot be used, for a target
// without two categories or with too many, for missing values that do not fit their column's
// kind, and when no attribute is left; `notes` says why then, too.
// `numbers` is the format that the files were read by.
MCBinModel::RunVariables MakeInputVariables(const InputFiles& files,
                                            const std::vector<ColumnRequest>& requests,
                                            const InputScan& scan,
                                            IBINVariable::BINWRoundingOption rounding,
                                            const NumberFormat& numbers,
                                            std::vector<ColumnNote>& notes);

// A note for each attribute of these bins that has another whole number in every record, as
// identifiers have. Weighted records are not told apart.
std::vector<ColumnNote> NoteIdentifiers(const MCBinModel::BinModel& model,
                                        const std::vector<ColumnRequest>& requests,
                                        const InputScan& scan);

}  // namespace MCBin
