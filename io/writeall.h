#pragma once

#include <string_view>

namespace MCBin {

// Writes all of `text` to an open file; false, with errno set, when that fails.
// Throws Interrupt::Requested; it looks after every write, however slow the reader is.
bool WriteAll(int file, std::string_view text);

}  // namespace MCBin
