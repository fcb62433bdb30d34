#pragma once

#include <memory>
#include <ostream>

#include "../common/export.h"
#include "../common/mcstatus.h"
#include "ibinalgorithm.h"

class BINSettings;
class BINVarList;

// Makes supervised algorithms. One factory may make many; it keeps no link to them.
class MCBINNING_API BINFactory {
 public:
  BINFactory();
  BINFactory(const BINFactory&) = delete;
  BINFactory& operator=(const BINFactory&) = delete;
  ~BINFactory();

  // A new algorithm that the caller owns, with its own copy of both arguments; null on an
  // error, which GetStatus() tells: 120003 the list has a categorical variable with fewer
  // than two categories (datum 1 = its index) or no attribute (datum 1 = -1), 3 out of memory,
  // or 1 when the settings' cancel query says stop already.
  IBINAlgorithm* CreateBINAlgorithm(BINSettings& settings, BINVarList& varList);

  // How the last creation went.
  MCBinning::MCStatus GetStatus() const;

  // Writes a readable dump, in the stream's own formatting.
  std::ostream& Display(std::ostream& os) const;

 private:
  MCBinning::MCStatus fStatus;
  std::unique_ptr<IBINAlgorithm> fAlgorithm;
};
