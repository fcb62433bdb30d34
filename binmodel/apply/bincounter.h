#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "../model/binmodel.h"
#include "../model/binmodelexport.h"
#include "../model/binsource.h"
#include "../model/variableinfo.h"

namespace MCBinModel {

// One result of a model, counted anew on other data with the cut points as they are.
struct RecountedBins {
  std::size_t result = 0;          // in BinModel::results
  AttributeBins counts;            // of the other data; its distinct values are not counted
  std::vector<double> cutWeights;  // for each cut point, of the cases whose value equals it
};

// What a pass over other data found.
struct Recount {
  std::uint64_t recordCount = 0;       // the dropped ones included
  DroppedRecords dropped;              // for their weight
  std::vector<RecountedBins> results;  // in the order in which they were asked for
};

// Counts the cases of every bin.
//
// A case counts for a result when it has a value and, where there is one, a target: as in the run
// that made the bins, so the same data give the same weights. Without a value it is one of the
// missing cases.
class MCBINMODEL_API BinCounter {
 public:
  // A variable that takes part. Several results may use one.
  struct Variable {
    bool isTarget = false;  // of BinModel::targets, else of its attributes
    std::size_t index = 0;  // in those

    // What the model says of it.
    const VariableInfo& GetInfo(const BinModel& model) const {
      return isTarget ? model.targets[index] : model.attributes[index];
    }
  };

  // Borrows the model. `results` are indexes into the model's.
  BinCounter(const BinModel& model, const std::vector<std::size_t>& results);

  // What Add() wants values of, in this order.
  const std::vector<Variable>& GetVariables() const { return fVariables; }

  // A record that was not dropped: for each variable the value as ValueCoder gives it, NaN where
  // there is none.
  void Add(const double* values, double weight = 1.0);

  // `count` records: for each variable their values, and their weights. Without weights (null)
  // each counts once; a record whose weight is NaN is passed over, as a dropped one.
  void Add(const double* const* columns, const double* weights, std::size_t count);

  // What was counted, in the order of the results. Ends the counting.
  std::vector<RecountedBins> Finish();

 private:
  struct Row {
    RecountedBins bins;
    std::size_t attribute = 0;  // in fVariables, also the next
    std::size_t target = 0;
  };

  void AddResult(std::size_t index);
  std::size_t PlaceOf(const Variable& variable);
  void AddCase(Row& row, double value, double category, double weight) const;

  const BinModel& fModel;
  std::vector<Variable> fVariables;
  std::vector<std::size_t> fAttributePlaces;  // in fVariables; kNoPlace for those that take no part
  std::vector<std::size_t> fTargetPlaces;
  std::vector<Row> fRows;
};

// Whether the counts are those of the model: the weights of all bins, and of all classes; of the
// missing cases where both have counted them.
MCBINMODEL_API bool HasSameCounts(const AttributeBins& bins, const AttributeBins& others);

// The cut points of equal-frequency bins that explain why the data they were made from count
// differently: midpoints between neighbouring doubles that rounded onto one of the two, so
// that the cases of that value are on the other side of the cut point than in the model.
// Indexes of cut points, ascending; empty when the weights are equal or something else
// differs, too.
MCBINMODEL_API std::vector<std::size_t> FindRoundedMidpoints(const AttributeBins& bins,
                                                             const RecountedBins& recounted,
                                                             bool rightClosed);

}  // namespace MCBinModel
