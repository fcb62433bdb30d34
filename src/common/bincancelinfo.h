#pragma once

#include <atomic>
#include <ostream>

#include "export.h"

class MCQueryCancel;

// Whether a run is to stop: a flag, and the host's query that can set it.
//
// SetCancel() may be called from any thread; the run sees it at its next poll. Everything
// else belongs to the thread that runs CreateBins.
class MCBINNING_API BINCancelInfo {
 public:
  // `query` stays the host's and may be null.
  explicit BINCancelInfo(MCQueryCancel* query);
  BINCancelInfo(const BINCancelInfo&) = delete;
  BINCancelInfo& operator=(const BINCancelInfo&) = delete;

  // Cancels for good.
  void SetCancel();

  // Replaces the query, which stays the host's; null for none.
  void SetCancelPtr(MCQueryCancel* query);

  // Whether the run is cancelled; asks the query, once, unless it already is.
  bool IsCancel();

  // The same without asking the query.
  bool WasCancelled() const { return fCancelled.load(std::memory_order_relaxed); }

  // Writes a readable dump, in the stream's own formatting.
  std::ostream& Display(std::ostream& os) const;

 private:
  MCQueryCancel* fQuery;
  std::atomic<bool> fCancelled;
};
