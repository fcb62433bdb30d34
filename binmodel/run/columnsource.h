#pragma once

#include <cstddef>
#include <cstdint>

#include "../model/binmodelexport.h"

namespace MCBinModel {

// Columns of numbers, which a run reads block by block. A host implements it over whatever holds
// its data; MemoryColumns is the one over columns in memory.
//
//   Blocks      all of GetRecordsPerBlock() records, but for the last, which may have fewer.
//   Values      of a continuous variable the number, of a categorical one the code of its
//               category, of a weight variable the weight. MCMV::gMissingValue and NaN are
//               missing, and so is a code below 0.
//   Threads     any number call every operation at the same time.
//   Failure     an operation that cannot do its work throws, best a Refusal: the run ends and
//               throws it again.
class MCBINMODEL_API ColumnSource {
 public:
  virtual ~ColumnSource();

  // Of all blocks together.
  virtual std::uint64_t GetRecordCount() const = 0;

  // From 1.
  virtual std::size_t GetRecordsPerBlock() const = 0;

  // The values of one column in one block. `values` has room for a whole block, or for all
  // records when there are fewer.
  virtual void Read(std::size_t block, std::size_t column, double* values) const = 0;

 protected:
  // For derived classes.
  ColumnSource() = default;
  ColumnSource(const ColumnSource&) = default;
  ColumnSource& operator=(const ColumnSource&) = default;
};

}  // namespace MCBinModel
