#pragma once

#include <memory>
#include <string>
#include <vector>

#include "arrowabi.h"
#include "column.h"

namespace MCBinPython {

// What was taken over from an Arrow producer; its memory lives as long as the owner.
struct ArrowTable {
  std::vector<Column> columns;
  std::shared_ptr<const void> owner;
};

// Takes all batches of a stream, or one array; structs become their fields, anything else a column
// of that name. The structures are moved from. Throws Refusal for what the producer refuses, and
// for missing rows.
ArrowTable TakeStream(ArrowArrayStream& stream, const std::string& name);
ArrowTable TakeArray(ArrowSchema& schema, ArrowArray& array, const std::string& name);

}  // namespace MCBinPython
