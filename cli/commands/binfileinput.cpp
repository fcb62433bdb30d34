#include "cli/commands/binfileinput.h"

#include "binmodel/file/binfile.h"
#include "io/readall.h"

namespace MCBin {

MCBinModel::BinModel LoadBinFile(const std::string& path) {
  const InputText input = ReadAll(path, '{', "a bin file, which mcbin writes with --json");
  return MCBinModel::ParseBinFile(input.text, input.name);
}

}  // namespace MCBin
