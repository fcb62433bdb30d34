#include "binmodel/text/utf8.h"

#include <utf8proc.h>

#include <algorithm>
#include <iterator>

namespace MCBinModel {

namespace {

struct Range {
  std::uint32_t first;
  std::uint32_t last;
};

constexpr Range kHidden[] = {{0x034F, 0x034F},     // joiner of letters
                             {0x061C, 0x061C},     // Arabic letter mark
                             {0x115F, 0x1160},     // fillers of Korean syllables
                             {0x17B4, 0x17B5},     // vowels that are not written
                             {0x180E, 0x180E},     // Mongolian vowel separator
                             {0x200B, 0x200F},     // zero width; direction marks
                             {0x2028, 0x202E},     // separators; embedding, override
                             {0x2060, 0x206F},     // joiners; isolates
                             {0x3164, 0x3164},     // a filler
                             {0xFEFF, 0xFEFF},     // byte-order mark
                             {0xFFA0, 0xFFA0},     // a filler
                             {0xFFF9, 0xFFFB},     // annotations
                             {0x1BCA0, 0x1BCA3},   // of shorthand
                             {0x1D173, 0x1D17A},   // of musical notes
                             {0xE0000, 0xE007F}};  // tags

}  // namespace

CodePoint TakeCodePoint(std::string_view& text) {
  utf8proc_int32_t value = -1;
  const utf8proc_ssize_t length =
      utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                       static_cast<utf8proc_ssize_t>(text.size()), &value);
  const bool isUtf8 = length > 0;
  const std::string_view bytes = text.substr(0, isUtf8 ? static_cast<std::size_t>(length) : 1);
  text.remove_prefix(bytes.size());
  return {static_cast<std::uint32_t>(value), bytes, isUtf8};
}

bool IsUtf8(std::string_view text) {
  if (IsPlain(text)) return true;
  while (!text.empty()) {
    if (!TakeCodePoint(text).isUtf8) return false;
  }
  return true;
}

bool IsPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= 0x20 && c < 0x7F; });
}

bool IsControl(std::uint32_t codePoint) {
  return codePoint < 0x20 || (codePoint >= 0x7F && codePoint < 0xA0);
}

bool IsHidden(std::uint32_t codePoint) {
  return std::any_of(std::begin(kHidden), std::end(kHidden), [codePoint](const Range& range) {
    return codePoint >= range.first && codePoint <= range.last;
  });
}

}  // namespace MCBinModel
