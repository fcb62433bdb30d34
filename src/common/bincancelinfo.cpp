#include "common/bincancelinfo.h"

#include "common/displayframe.h"
#include "common/mcquerycancel.h"

BINCancelInfo::BINCancelInfo(MCQueryCancel* query) : fQuery(query), fCancelled(false) {}

void BINCancelInfo::SetCancel() { fCancelled.store(true, std::memory_order_relaxed); }

void BINCancelInfo::SetCancelPtr(MCQueryCancel* query) { fQuery = query; }

bool BINCancelInfo::IsCancel() {
  // Only a yes is stored: a no must not undo a SetCancel() of another thread.
  if (!fCancelled.load(std::memory_order_relaxed) && fQuery != nullptr && fQuery->QueryCancel()) {
    SetCancel();
  }
  return fCancelled.load(std::memory_order_relaxed);
}

std::ostream& BINCancelInfo::Display(std::ostream& os) const {
  MCBinning::DisplayStart(os, "BINCancelInfo");
  os << "Cancel query set = " << (fQuery != nullptr) << '\n'
     << "Cancelled = " << fCancelled.load() << '\n';
  return MCBinning::DisplayEnd(os, "BINCancelInfo");
}
