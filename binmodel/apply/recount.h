#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "binmodel/model/binmodel.h"
#include "csv/columnnames.h"
#include "csv/csvreader.h"
#include "csv/missingtexts.h"
#include "csv/recordpass.h"
#include "csv/weightcheck.h"

namespace MCBinModel {

// One result of a bin file, counted anew on other data with the cut points as they are.
struct RecountedBins {
  std::size_t result;              // of the bin file, in BinModel::results
  AttributeBins counts;            // of the other data; its distinct values are not counted
  std::vector<double> cutWeights;  // for each cut point, of the cases whose value equals it
};

// What the pass over the other data found.
struct Recount {
  std::uint64_t recordCount = 0;  // the dropped ones included
  DroppedRecords dropped;
  std::vector<RecountedBins> results;
  std::vector<std::string> notes;  // about values that the bin file does not know
};

// The column of weights; null for none.
struct RecountWeight {
  const MCBin::ColumnRequest* column;
  IBINVariable::BINWRoundingOption rounding;
  MissingDefinition missing;
};

// Counts the cases of every bin among the records after the header, which is behind the
// reader. `results` are indexes into the model's.
//
// A case counts for a result when it has a weight, a value and, where there is one, a
// target: as in the run that made the bins, so the same data give the same weights.
//
// Throws Refusal for a column that is not there and for what the reader, the weights and
// the columns refuse; Interrupt::Requested when the user stops it.
Recount CountAgain(const BinModel& model, const std::vector<std::size_t>& results,
                   const MCBin::ColumnNames& names, const RecountWeight& weight,
                   const MCBin::MissingTexts& missingTexts, MCBin::CsvReader& reader,
                   const MCBin::ReadProgress& progress);

// Whether the counts are those of the bin file: the weights of all bins, and of all classes.
bool HasSameCounts(const AttributeBins& bins, const AttributeBins& others);

// The cut points of equal-frequency bins that explain why the data they were made from count
// differently: midpoints between neighbouring doubles that rounded onto one of the two, so
// that the cases of that value are on the other side of the cut point than in the bin file.
// Indexes of cut points, ascending; empty when the weights are equal or something else
// differs, too.
std::vector<std::size_t> FindRoundedMidpoints(const AttributeBins& bins,
                                              const RecountedBins& recounted, bool rightClosed);

}  // namespace MCBinModel
