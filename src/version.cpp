#include "version.h"

namespace MCBinning {

const char* GetVersion() { return MCBINNING_VERSION_STRING; }

}  // namespace MCBinning
