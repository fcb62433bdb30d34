#include "binmodel/model/usermissing.h"

namespace MCBinModel {

std::unique_ptr<BINNumericUserMissing> MakeNumericUserMissing(const MissingDefinition& missing) {
  auto numeric = std::make_unique<BINNumericUserMissing>();
  for (const double value : missing.numbers) numeric->AddValue(value, "");
  if (missing.interval) {
    numeric->SetInterval(BINNumericInterval(missing.interval->low, missing.interval->high));
  }
  return numeric;
}

std::unique_ptr<BINStringUserMissing> MakeStringUserMissing(const MissingDefinition& missing) {
  auto strings = std::make_unique<BINStringUserMissing>();
  for (const std::string& value : missing.texts) strings->AddValue(value, "");
  return strings;
}

}  // namespace MCBinModel
