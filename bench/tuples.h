#pragma once

#include <cstddef>
#include <vector>

#include "columns.h"
#include "metadata/bindatatuple.h"

namespace bench {

// The cases of an attribute as the library holds them while it bins, of weight 1.
inline std::vector<BINDataTuple> MakeTuples(const Column& values, const Column& classes) {
  std::vector<BINDataTuple> tuples(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    tuples[i] = {values[i], static_cast<std::uint8_t>(classes[i]), 1.0};
  }
  return tuples;
}

}  // namespace bench
