#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "../common/export.h"
#include "../common/mcstatus.h"
#include "../host/recorditerator.h"

class BINVarList;
class EFBINOutput;
class EFBINSettings;
class MCQueryCancel;
class ProgressListener;

// Equal-frequency binning of attributes, without a target. EFBINFactory makes it; the host
// deletes it.
//
// Records, cost, threads and exceptions are as with IBINAlgorithm.
class MCBINNING_API IEFBINAlgorithm {
 public:
  virtual ~IEFBINAlgorithm();

  // A banner with name and version.
  virtual std::string GetComponentVersion() const = 0;

  // Bins attributes, given by variable index, and adds them to the results; without a list
  // every variable but the weight. A target-role variable is binned like any other, and its
  // missing values drop no case of others.
  //
  // What befalls one attribute is stored with it and does not stop the others. OK when every
  // attribute that was run is, in this run and the earlier ones; warning 120018 otherwise. An
  // entry of the list that is refused before it is run only shows in its own result. Errors: 1
  // cancelled, 3 out of memory or more than 2^31 - 1 records stored, 120003 the list names another
  // target than the variable with that role, 120004 no data, 120009 the number of bins is not set,
  // 120011 no usable attribute in the list, 120012 a category code out of range, 120021 a temporary
  // file cannot be written. A data pass that failed is forgotten: the next call reads the records
  // it is given.
  virtual MCBinning::MCStatus CreateBins(MCCommon::RecordIterator& records,
                                         const std::vector<int>* attributes) = 0;

  // Whom to ask whether to stop; null for nobody. Stays the host's and is asked during
  // CreateBins() and GetStatus(); one that is in the settings also at creation.
  virtual void SetCancelPtr(MCQueryCancel* query) = 0;

  // Stops the run at its next poll, for good.
  virtual void Cancel() = 0;

  // Whom to tell about progress; null for nobody. Stays the host's.
  virtual void SetProgressListener(ProgressListener* listener) = 0;

  // The attributes of every run so far; lives as long as this object.
  virtual const EFBINOutput& GetBinningResults() const = 0;

  // The last status of an attribute that was not OK, over every run so far; error 1 once
  // cancelled.
  virtual MCBinning::MCStatus GetStatus() = 0;

  // The copy that was made at creation.
  virtual const EFBINSettings& GetSettings() const = 0;

  // Writes a readable dump of all that this object has, the results included.
  virtual void Display(std::ostream& os) const = 0;

  // The copy that was made at creation.
  virtual const BINVarList& GetVarList() const = 0;
};
