#include "csv/columnrequest.h"

#include <fmt/format.h>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/isotime.h"
#include "binmodel/text/number.h"

namespace MCBin {

using MCBinModel::MissingDefinition;
using MCBinModel::RefusalCode;

MissingDefinition MissingRequest::ForEitherKind() const {
  MissingDefinition missing{{}, interval, values};
  for (const std::string& value : values) {
    const MCBinModel::ParsedNumber number = MCBinModel::ParseNumber(value);
    if (number.kind == MCBinModel::NumberKind::kNumber) missing.numbers.push_back(number.value);
  }
  return missing;
}

MissingDefinition MissingRequest::ForNumbers() const {
  MissingDefinition missing{{}, interval, {}};
  for (const std::string& value : values) {
    const MCBinModel::ParsedNumber number = MCBinModel::ParseNumber(value);
    if (number.kind != MCBinModel::NumberKind::kNumber) {
      throw MCBinModel::Refusal(
          RefusalCode::kMissingNotNumeric, {"", column, value},
          fmt::format("the missing value {} of the numeric column {} is not "
                      "a number",
                      MCBinModel::QuotedText(value), MCBinModel::QuotedText(column)));
    }
    missing.numbers.push_back(number.value);
  }
  return missing;
}

MissingDefinition MissingRequest::ForTimes() const {
  MissingDefinition missing{{}, interval, {}};
  for (const std::string& value : values) {
    const auto time = MCBinModel::ParseTime(value);
    if (!time) {
      throw MCBinModel::Refusal(
          RefusalCode::kInput, {"", column, value},
          fmt::format("the missing value {} of the column {}, which holds dates, is none; the "
                      "ends of an interval are days alone",
                      MCBinModel::QuotedText(value), MCBinModel::QuotedText(column)));
    }
    missing.numbers.push_back(*time);
  }
  return missing;
}

MissingDefinition MissingRequest::ForTexts() const {
  if (interval) {
    throw MCBinModel::Refusal(RefusalCode::kMissingInterval, {"", column, ""},
                              fmt::format("column {} holds texts, which have no interval of "
                                          "missing values",
                                          MCBinModel::QuotedText(column)));
  }
  return {{}, std::nullopt, values};
}

}  // namespace MCBin
