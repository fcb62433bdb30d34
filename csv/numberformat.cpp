#include "csv/numberformat.h"

#include <string>

namespace MCBin {

namespace {

constexpr MCBinModel::ParsedNumber kNoNumber{MCBinModel::NumberKind::kText, 0.0};

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::size_t CountDigits(std::string_view text) {
  std::size_t count = 0;
  while (count < text.size() && IsDigit(text[count])) ++count;
  return count;
}

// Moves the digits before the decimal mark from `text` to `plain`. False where groups are no
// groups.
bool TakeWholes(std::string_view& text, char thousands, std::string& plain) {
  constexpr std::size_t kGroupDigits = 3;
  std::size_t digits = CountDigits(text);
  plain += text.substr(0, digits);
  text.remove_prefix(digits);
  if (text.empty() || thousands == '\0' || text[0] != thousands) return true;
  if (digits == 0 || digits > kGroupDigits || plain[plain.size() - digits] == '0') return false;
  while (!text.empty() && text[0] == thousands) {
    digits = CountDigits(text.substr(1));
    if (digits != kGroupDigits) return false;
    plain += text.substr(1, digits);
    text.remove_prefix(1 + digits);
  }
  return true;
}

}  // namespace

MCBinModel::ParsedNumber ParseNumber(std::string_view text, const NumberFormat& format) {
  if (format.IsPlain()) return MCBinModel::ParseNumber(text);
  text = MCBinModel::TrimBlanks(text);
  const bool startsLikeANumber =
      !text.empty() && (IsDigit(text[0]) || text[0] == format.decimal ||
                        (text.size() > 1 && (IsDigit(text[1]) || text[1] == format.decimal)));
  if (!startsLikeANumber) return MCBinModel::ParseNumber(text);  // also "nan" and "inf"
  std::string plain;
  if (text[0] == '+' || text[0] == '-') {
    plain += text[0];
    text.remove_prefix(1);
  }
  if (!TakeWholes(text, format.thousands, plain)) return kNoNumber;
  if (!text.empty() && text[0] == format.decimal) {
    plain += '.';
    text.remove_prefix(1);
  } else if (!text.empty() && text[0] == '.') {
    return kNoNumber;
  }
  return MCBinModel::ParseNumber(plain.append(text));
}

}  // namespace MCBin
