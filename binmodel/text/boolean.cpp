#include "binmodel/text/boolean.h"

#include <algorithm>
#include <array>

namespace MCBinModel {

namespace {

struct BooleanPair {
  std::string_view no;  // in small letters
  std::string_view yes;
};

constexpr std::array<BooleanPair, 4> kPairs = {
    {{"false", "true"}, {"no", "yes"}, {"f", "t"}, {"n", "y"}}};

bool IsWord(std::string_view text, std::string_view word) {
  return std::equal(text.begin(), text.end(), word.begin(), word.end(), [](char c, char small) {
    return (c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c) == small;
  });
}

}  // namespace

std::optional<BooleanText> ParseBoolean(std::string_view text) {
  for (std::size_t pair = 0; pair < kPairs.size(); ++pair) {
    if (IsWord(text, kPairs[pair].no)) return BooleanText{false, pair};
    if (IsWord(text, kPairs[pair].yes)) return BooleanText{true, pair};
  }
  return std::nullopt;
}

}  // namespace MCBinModel
