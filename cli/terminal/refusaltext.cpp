#include "cli/terminal/refusaltext.h"

#include <fmt/format.h>

#include "binmodel/text/displaytext.h"

namespace MCBin {

using MCBinModel::RefusalCode;

std::string RefusalText(const MCBinModel::Refusal& refusal) {
  const std::string place = refusal.GetPlace().empty() ? "" : refusal.GetPlace() + ": ";
  const std::string& detail = refusal.GetDetail();
  switch (refusal.GetCode()) {
    case RefusalCode::kSeveralTargets:
      return place + "bins for several targets; choose one with --target: " + detail;
    case RefusalCode::kNoTargets:
      return place + "these bins have no target, leave --target out";
    case RefusalCode::kMissingNotNumeric:
      return fmt::format(
          "--missing {}: {} is not a number, but the column is numeric; texts that stand for a "
          "missing value go to --na",
          MCBinModel::QuotedText(refusal.GetSubject()), MCBinModel::QuotedText(detail));
    case RefusalCode::kMissingInterval:
      return fmt::format(
          "--missing {}: an interval needs a numeric column; a text with a colon is written in "
          "double quotes",
          MCBinModel::QuotedText(refusal.GetSubject()));
    default:
      return refusal.what();
  }
}

bool IsUsageRefusal(RefusalCode code) {
  return code == RefusalCode::kMissingNotNumeric || code == RefusalCode::kMissingInterval;
}

}  // namespace MCBin
