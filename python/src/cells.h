#pragma once

#include <cstddef>
#include <optional>

#include "column.h"

namespace MCBinPython {

// A whole column as texts, which stay where they are, or as numbers; what its dictionary says,
// where it has one. Throws Refusal for an index that the dictionary does not have.
Cells ReadCells(const Column& column);

// Throws Refusal for moments: no number is the name of one.
void CheckCategories(const Column& column);

// Takes a cell away.
void SetInvalid(Cells& cells, std::size_t index);

// Where a dictionary has what an index of a column stands for; nothing for an index below 0, which
// stands for a missing value. Throws Refusal for one that the dictionary does not have.
std::optional<std::size_t> FindInDictionary(const Cells& dictionary, double index);

}  // namespace MCBinPython
