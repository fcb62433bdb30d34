#include "binmodel/text/displaytext.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "binmodel/text/escape.h"
#include "binmodel/text/utf8.h"

namespace {

using MCBinModel::DisplayWidth;
using MCBinModel::ElideText;
using MCBinModel::HtmlText;
using MCBinModel::PrintableText;
using MCBinModel::QuoteDoubled;
using MCBinModel::XmlText;

TEST(DisplayText, KeepsDataFromMovingTheCursorOrTurningTheText) {
  EXPECT_EQ(PrintableText("a\n\r\t\x1B[2J\x7F\u009B\xFF"),
            "a\\n\\r\\t\\x1B[2J\\x7F\\xC2\\x9B\\xFF");
  for (const std::uint32_t c :
       {0x202AU, 0x202EU, 0x2066U, 0x2069U, 0x200EU, 0x200FU, 0x061CU, 0x200BU, 0x200DU, 0xFEFFU,
        0x2060U, 0x2028U, 0x2029U, 0x034FU, 0x1160U, 0x3164U, 0xFFA0U, 0x1D173U}) {
    EXPECT_TRUE(MCBinModel::IsHidden(c)) << c;
  }
  EXPECT_EQ(PrintableText("a\u202Eb\u2069\uFEFF\U000E0041"), "a\\u202Eb\\u2069\\uFEFF\\uE0041");
  EXPECT_EQ(PrintableText("\u05D0\u0301\u202F\u00AD"), "\u05D0\u0301\u202F\u00AD");
  EXPECT_FALSE(MCBinModel::IsUtf8("\xC0\x80"));      // overlong
  EXPECT_FALSE(MCBinModel::IsUtf8("\xED\xA0\x80"));  // a surrogate
  EXPECT_TRUE(MCBinModel::IsUtf8("日本\U0001F600"));
}

TEST(DisplayText, KnowsTheWidthOfEveryScript) {
  EXPECT_EQ(DisplayWidth("Größe"), 5u);
  EXPECT_EQ(DisplayWidth("Gro\u0308ße"), 5u);
  EXPECT_EQ(DisplayWidth("ชื่อ"), 2u);  // two letters, two marks
  EXPECT_EQ(DisplayWidth("日本é"), 5u);
  EXPECT_EQ(DisplayWidth("한ｶ"), 3u);  // a half-width letter
  EXPECT_EQ(DisplayWidth("\U0001F600\u231A"), 4u);
  EXPECT_EQ(DisplayWidth("█▍"), 2u);
}

TEST(DisplayText, ElidesWholeCharacters) {
  EXPECT_EQ(ElideText("Größenklasse", 6), "Größe\u2026");
  EXPECT_EQ(ElideText("Größe", 5), "Größe");
  EXPECT_EQ(ElideText("ae\u0301e\u0301e\u0301", 3), "ae\u0301\u2026");
  EXPECT_EQ(ElideText("日本語", 4), "日\u2026");
  EXPECT_EQ(ElideText("a\U0001F1E9\U0001F1EAb", 3), "a\u2026");  // a flag is two code points
  std::string marks = "a";
  for (int i = 0; i < 1000; ++i) marks += "\u0301";
  EXPECT_LT(ElideText(marks, 5).size(), 120u);
}

TEST(Escape, LeavesNothingWithAMeaning) {
  EXPECT_EQ(QuoteDoubled("a\"b", '"'), "\"a\"\"b\"");
  EXPECT_EQ(QuoteDoubled("''", '\''), "''''''");
  EXPECT_EQ(HtmlText("<a href='\"'>&\x01\u202E"),
            "&lt;a href=&#39;&quot;&#39;&gt;&amp;\\x01\\u202E");
  EXPECT_EQ(XmlText("<\"&>\n\t\u202E\u0085ö"), "&#60;&#34;&#38;&#62;&#10;&#9;&#8238;&#133;ö");
  for (const char* text : {"\x1B", "\uFFFE", "\uFFFF", "\xFF"}) EXPECT_FALSE(XmlText(text)) << text;
}

}  // namespace
