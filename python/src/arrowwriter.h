#pragma once

#include "arrowabi.h"
#include "frame.h"

namespace MCBinPython {

// A frame as Arrow's structures, to be released by whoever gets them: the schema of a struct with
// the columns, and a stream of one batch. They share the frame's memory and keep it.
void ExportSchema(const Frame& frame, ArrowSchema& schema);
void ExportStream(const Frame& frame, ArrowArrayStream& stream);

}  // namespace MCBinPython
