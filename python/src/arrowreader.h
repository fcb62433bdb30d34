#pragma once

#include <functional>
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

// Takes all batches of a stream, or one array: the column of that name, or without a name a table,
// whose columns are the fields of a struct. The structures are moved from. `pause` is called before
// each batch, and may throw. Throws Refusal for what the producer refuses, for missing rows, and
// for a table that is none.
ArrowTable TakeStream(ArrowArrayStream& stream, const std::string& name,
                      const std::function<void()>& pause);
ArrowTable TakeArray(ArrowSchema& schema, ArrowArray& array, const std::string& name);

}  // namespace MCBinPython
