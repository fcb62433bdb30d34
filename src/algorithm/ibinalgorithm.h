#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "../common/export.h"
#include "../common/mcstatus.h"
#include "../host/recorditerator.h"

class BINOutput;
class BINSettings;
class BINVarList;
class MCQueryCancel;
class ProgressListener;

// Supervised binning of attributes against categorical targets. BINFactory makes it; the
// host deletes it.
//
//   Records     are read once, by the first CreateBins(); their values wait in temporary
//               files until this object is deleted.
//   Cost        the cases of one attribute are in memory at a time; each is read and sorted
//               in linear time.
//   Threads     one object belongs to one thread, but Cancel() may be called from any.
//               Different objects share nothing but MCMV::gMissingValue.
//   Exceptions  none leaves an operation that returns a status: memory that ran out is error
//               3, anything else that a host's object has thrown error 1. GetComponentVersion()
//               and Display() may throw std::bad_alloc.
class MCBINNING_API IBINAlgorithm {
 public:
  virtual ~IBINAlgorithm();

  // A banner with name and version.
  virtual std::string GetComponentVersion() const = 0;

  // Bins attribute/target pairs, given by variable index, and adds them to the results.
  //
  //   neither list   every variable but the target and the weight, against the list's target
  //   attributes     those, against the list's target
  //   both           attribute i against target i, any categorical variable
  //
  // What befalls one pair is stored with it and does not stop the others. OK when every pair
  // that was run is, in this run and the earlier ones; warning 120018 otherwise. An entry of a
  // list that is refused before it is run only shows in its own result. Errors: 1
  // cancelled, 3 out of memory or more than 2^31 - 1 records stored, 120003 the list names another
  // target than the variable with that role, 120004 no data, 120008 the lists do not go together or
  // hold no usable pair, 120009 the number of bins is not set, 120010 no usable target, 120012 a
  // category code out of range, 120021 a temporary file cannot be written. A data pass that failed
  // is forgotten: the next call reads the records it is given.
  virtual MCBinning::MCStatus CreateBins(MCCommon::RecordIterator& records,
                                         const std::vector<int>* attributes,
                                         const std::vector<int>* targets) = 0;

  // Whom to ask whether to stop; null for nobody. Stays the host's and is asked during
  // CreateBins() and GetStatus(); one that is in the settings also at creation.
  virtual void SetCancelPtr(MCQueryCancel* query) = 0;

  // Stops the run at its next poll, for good.
  virtual void Cancel() = 0;

  // Whom to tell about progress; null for nobody. Stays the host's.
  virtual void SetProgressListener(ProgressListener* listener) = 0;

  // The pairs of every run so far; lives as long as this object.
  virtual const BINOutput& GetBinningResults() const = 0;

  // The last status of a pair that was not OK, over every run so far; error 1 once cancelled.
  virtual MCBinning::MCStatus GetStatus() = 0;

  // The copy that was made at creation.
  virtual const BINSettings& GetSettings() const = 0;

  // Writes a readable dump of all that this object has, the results included.
  virtual void Display(std::ostream& os) const = 0;

  // The copy that was made at creation.
  virtual const BINVarList& GetVarList() const = 0;
};
