#include "host/missingvalue.h"

#include <limits>

namespace MCMV {

double gMissingValue = std::numeric_limits<double>::lowest();

}  // namespace MCMV
