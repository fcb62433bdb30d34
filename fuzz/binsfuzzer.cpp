// Any bytes as a bin file and the data it is applied to.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "fuzz/anybins.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  TryBins({reinterpret_cast<const char*>(data), size});
  return 0;
}
