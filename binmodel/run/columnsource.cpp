#include "binmodel/run/columnsource.h"

namespace MCBinModel {

ColumnSource::~ColumnSource() = default;

}  // namespace MCBinModel
