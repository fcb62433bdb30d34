#pragma once

#include <cstdint>
#include <string_view>

namespace MCBinModel {

// A code point of a UTF-8 text. A byte that is not part of well-formed UTF-8 stands alone.
struct CodePoint {
  std::uint32_t value;     // meaningless when it is not UTF-8
  std::string_view bytes;  // of the text
  bool isUtf8;
};

// Takes the first code point off `text`, which is not empty.
CodePoint TakeCodePoint(std::string_view& text);

// Whether the bytes are well-formed UTF-8.
bool IsUtf8(std::string_view text);

// Whether it is ASCII without control characters, as most texts are: each byte is a code point that
// shows in one column.
bool IsPlain(std::string_view text);

// Whether a terminal may take it for an order: U+0000 to U+001F and U+007F to U+009F.
bool IsControl(std::uint32_t codePoint);

// Whether it shows nothing and may change how the text around it reads: controls of the writing
// direction, characters without width, fillers, line separators. Not those that choose the form of
// the character before them.
bool IsHidden(std::uint32_t codePoint);

}  // namespace MCBinModel
