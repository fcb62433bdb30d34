#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "binmodel/report/binreport.h"

namespace MCBinModel {

// What several data are called at the head of a column, at most `width` columns wide: without the
// folders that lead to a file, unless two names would be the same. Long names keep their beginning
// and end, or where that does not tell them apart, lose the beginning that they share.
std::vector<std::string> ShortDataNames(const std::vector<NamedRecount>& data, std::size_t width);

}  // namespace MCBinModel
