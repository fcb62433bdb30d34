#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "binmodel/apply/bincounter.h"
#include "binmodel/apply/valuecoder.h"
#include "binmodel/apply/weightcoder.h"
#include "binmodel/model/binmodel.h"
#include "binmodel/run/binrun.h"
#include "binmodel/run/columnblocks.h"
#include "binmodel/run/columnsource.h"

namespace MCBinModel {

// The cases of some results of a run, counted from the columns that it read, for the cut points
// there are.
class Recounting {
 public:
  // Borrows the model and the source. `results` are indexes into the model's; columns are those of
  // `variables`, names those of the model.
  Recounting(const BinModel& model, const std::vector<std::size_t>& results,
             const RunVariables& variables, const ColumnSource& source);

  // Once. Calls `goOn` for every block with its number of records; when that answers false, what
  // has been counted so far is all.
  std::vector<RecountedBins> Count(const std::function<bool(std::size_t recordCount)>& goOn);

 private:
  std::vector<SourceColumn> ColumnsOf(const RunVariables& variables) const;
  void AddBlock(std::size_t count);

  const BinModel& fModel;
  BinCounter fCounter;
  ColumnBlocks fBlocks;
  std::vector<ValueCoder> fCoders;
  std::optional<WeightCoder> fWeightCoder;
  std::vector<double> fCodes;  // variable by variable
  std::vector<double> fWeights;
};

}  // namespace MCBinModel
