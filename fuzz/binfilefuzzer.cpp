// Any bytes as a bin file: refused with a reason, or written anew the same every time.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "binmodel/file/binfile.h"
#include "binmodel/model/refusal.h"
#include "fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  std::string written;
  try {
    written = MCBinModel::WriteBinFile(MCBinModel::ParseBinFile(text, "input"));
  } catch (const MCBinModel::Refusal&) {
    return 0;
  }
  Require(written == MCBinModel::WriteBinFile(MCBinModel::ParseBinFile(written, "written")),
          "what is written anew reads back");
  return 0;
}
