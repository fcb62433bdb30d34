#pragma once

#include <cstddef>
#include <string>

#include "csv/missingrequest.h"

namespace MCBin {

enum class ColumnUse { kTarget, kWeight, kAttribute };

// How a column is to be read: as its fields suggest, or as the user said.
enum class KindRequest { kDetect, kContinuous, kCategorical };

// What a run wants of one column of the file.
struct ColumnRequest {
  std::size_t position;  // in the file
  std::string name;
  ColumnUse use;
  KindRequest kind;
  bool byName;  // the user named it: it is not left out silently
  MissingRequest missing;

  // Its categories are needed, if it turns out to have any.
  bool MayBeCategorical() const {
    return use == ColumnUse::kTarget || kind == KindRequest::kCategorical;
  }
};

}  // namespace MCBin
