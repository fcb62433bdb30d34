// Which columns of a CSV file a run takes, and as what.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <tuple>

#include "cli/program.h"

namespace {

using nlohmann::json;

// "target | attribute attribute", categorical ones with their categories in code order.
std::string Describe(const json& bins) {
  std::string text;
  for (const char* role : {"targets", "attributes"}) {
    if (!text.empty()) text += " |";
    for (const json& variable : bins[role]) {
      if (!text.empty()) text += " ";
      text += variable["name"];
      if (variable.contains("categories")) text += variable["categories"].dump();
    }
  }
  return text;
}

struct Columns {
  const char* name;
  std::string content;
  const char* options;
  const char* expected;
};

const Columns kKinds[] = {
    {"TextsAreLeftOut", "a,t,y\n1,q,x\n,NA,z\n", "y", R"(y["x","z"] | a)"},
    {"ClassesAscendCodesFollowTheirFirstAppearance", "a,y\nq,z\np,x\nq,z\n", "y --categorical a",
     R"(y["x","z"] | a["q","p"])"},
    {"NumbersAreOneCategoryHoweverWritten", "a,y\n1,01\n2,1.0\n3,0\n", "y", "y[0,1] | a"},
    {"OneTextMakesTextsOfAll", "a,y\n1,01\n2,1.0\n3,x\n", "y", R"(y["01","1.0","x"] | a)"},
    {"NanIsMissingAmongNumbers", "a,y\n1,1\nnan,nan\n3,2\n", "y", "y[1,2] | a"},
    {"NanIsATextAmongTexts", "a,y\n1,nan\n2,x\n", "y", R"(y["nan","x"] | a)"},
    {"OnlyMissingIsContinuous", "a,y\n,x\nNA,z\n", "y", R"(y["x","z"] | a)"},
    {"QuotedEmptyIsACategory", "a,y\n1,\"\"\n2,x\n3,\n", "y", R"(y["","x"] | a)"},
    {"UnnamedColumnIsNotBinned", ",a,y\n1,1,x\n2,2,z\n", "y", R"(y["x","z"] | a)"},
    {"OptedInByCategory", "a,t,y\n1,q,x\n2,r,z\n", "y --categorical t",
     R"(y["x","z"] | a t["q","r"])"},
    {"CategoricalNumbers", "a,y\n1,x\n2,z\n", "y --categorical a", R"(y["x","z"] | a[1,2])"},
    {"AttributesInTheOrderGiven", "a,b,c,y\n1,1,1,x\n2,2,2,z\n", "y --attributes c,a",
     R"(y["x","z"] | c a)"},
    {"SeveralTargets", "a,y,v\n1,x,1\n2,z,2\n", "v,y", R"(v[1,2] y["x","z"] | a)"},
    {"UserMissingIsNoCategory", "a,y\n1,9\n2,1\n3,2\n4,55\n", "y --missing y=9,50:60",
     "y[1,2] | a"},
    {"UserMissingTextIsNoCategory", "a,y\n1,?\n2,x\n3,z\n", "y --missing y=?", R"(y["x","z"] | a)"},
    {"DroppedRecordsAddNoText", "a,y,w\n1,q,0\n2,x,1\n3,z,2\n", "y --weight w",
     R"(y["x","z"] | a)"},
    {"DroppedRecordsAddNoNumber", "a,y,w\n1,7,0\n2,1,1\n3,2,2\n", "y --weight w", "y[1,2] | a"},
    {"AttributesByPattern", "bal_2,x,bal_1,id,y\n1,1,1,1,x\n2,2,2,2,z\n", "y --attributes bal_*,x",
     R"(y["x","z"] | bal_2 bal_1 x)"},
    {"Excluded", "bal_2,x,bal_1,id,y\n1,1,1,1,x\n2,2,2,2,z\n", "y --exclude id,*_?",
     R"(y["x","z"] | x)"},
    {"DecimalCommaTakesSemicolons", "a;b;y\n1,5;1.5;x\n2,5;1.5;z\n", "y --decimal , --attributes a",
     R"(y["x","z"] | a)"},
    {"MissingTextsAreAdded", "a,y\n?,x\nNA,z\n1,x\n-999.0,z\n", "y --na ?,-999",
     R"(y["x","z"] | a)"},
    {"MissingTextsAreReplaced", "a,y\n1,x\n2,NA\n", "y --na-only ?", R"(y["NA","x"] | a)"},
    {"BooleansAreCategoriesNoFirst", "a,b,y\ntrue,Yes,x\n,No,z\nfalse,nan,x\n", "y",
     R"(y["x","z"] | a["false","true"] b["No","Yes"])"},
    {"BooleansInTwoSpellingsAreTexts", "a,b,c,y\nno,t,1,x\nNO,true,2,z\n", "y",
     R"(y["x","z"] | c)"},
    {"UserMissingBooleanIsNoCategory", "a,b,y\nt,1,x\nf,2,z\n", "y --missing a=f",
     R"(y["x","z"] | b)"},
    {"ManyTextsOfFewNumbers", "a,y\n1," + std::string(300, '0') + "1\n2,2\n", "y", "y[1,2] | a"},
};

TEST(InputVariables, AreFoundWithKindsAndCategories) {
  const Program program;
  for (const auto& [name, content, options, expected] : kKinds) {
    const std::string command = "supervised --json - --quiet --target ";
    const auto outcome = program.Run(command + options, content);
    ASSERT_EQ(outcome.err, "") << name;
    EXPECT_EQ(Describe(json::parse(outcome.out)), expected) << name;
  }
}

// A column is never lost in silence for one field.
TEST(InputVariables, FewTextsAmongNumbersAreNamedWithTheirCure) {
  const Program program;
  std::string content = "a,b,c,y\n";
  for (int i = 0; i < 50; ++i) {
    content += i % 20 == 7 ? "?,it's," : "1,2,";
    content += std::to_string(i) + (i % 2 == 0 ? ",x\n" : ",z\n");
  }
  const auto outcome = program.Run("supervised --target y", content);
  EXPECT_NE(outcome.err.find("left out: in column 'a', 3 of 50 fields are no numbers: '?'; read it "
                             "as missing with --na '?'\n"),
            std::string::npos)
      << outcome.err;
  EXPECT_NE(outcome.err.find("--na 'it'\\''s'\n"), std::string::npos) << outcome.err;
  const auto named = program.Run("supervised --target y --attributes a", content);
  EXPECT_EQ(named.exitCode, 1);
  EXPECT_NE(
      named.err.find("'?' in column 'a' is not a number (3 of 50 fields are no numbers: '?')"),
      std::string::npos)
      << named.err;
}

// The option that is named must do what is said of it.
TEST(InputVariables, AreGivenTheAdviceThatHelps) {
  const std::string cut = "\"" + std::string(101, 'q') + "\"";
  const std::tuple<const char*, std::string, std::string, const char*> examples[] = {
      {"2", "1,5", "", "; '1,5' is a number with a decimal comma; --decimal , reads"},
      {"2", "1.234,5", "", "; --decimal , --thousands . reads them\n"},
      {"2,5", "1.234,5", " --decimal ,", "marks between its thousands; --thousands . reads them\n"},
      {"2.5", "1,5", "", "is no number: '1,5'; read it as missing with --na '\"1,5\"'\n"},
      {"2.5", "1,234.5", "", "; --thousands , reads them\n"},
      {"2", "\"\"", "", "; read it as missing with --na '\"\"'\n"},
      {"2", "q\x01", "", "is no number: 'q\\x01'\n"},
      {"2", cut, "", "\xE2\x80\xA6'\n"},
      {"yes", "?", "", "not numeric: 'a' (line 11: ?, unlike the booleans before it); --cat"}};
  const Program program;
  for (const auto& [number, text, options, advice] : examples) {
    std::string content = "a;b;y\n";
    for (int i = 0; i < 9; ++i) content += std::string(number) + ";1;" + "xz"[i % 2] + "\n";
    content += text + ";1;x\n";
    const auto outcome = program.Run("supervised -t y --delimiter ;" + options, content);
    EXPECT_NE(outcome.err.find(advice), std::string::npos) << outcome.err;
  }
}

TEST(InputVariables, TextsThatAreAllDifferentArePointedOut) {
  const Program program;
  std::string content = "id,most,few,a,y\n";
  for (int i = 0; i < 300; ++i) {
    const std::string number = std::to_string(i);
    content += "c" + number + ",c" + (i == 200 ? "1" : number) + ",c" +
               std::to_string(i < 99 ? i : i % 9) + "," + number + "," + (i % 2 == 0 ? "x" : "z") +
               "\n";
  }
  const auto left = program.Run("supervised -t y", content);
  EXPECT_NE(left.err.find("'id' (line 2: c0; the first 256 are all different, as identifiers are), "
                          "'most' (line 2: c0), 'few' (line 2: c0);"),
            std::string::npos)
      << left.err;
  std::string commas = "a;y\n";
  for (int i = 0; i < 300; ++i) {
    commas += std::to_string(i) + ",5;" + (i % 2 == 0 ? "x" : "z") + "\n";
  }
  const auto numbers = program.Run("supervised -t y --delimiter ;", commas);
  EXPECT_NE(numbers.err.find("'a' (line 2: 0,5); '0,5' is a number with a decimal comma"),
            std::string::npos)
      << numbers.err;
  EXPECT_NE(program.Run("supervised -t id", content).err.find("is one too many; the first 256 are"),
            std::string::npos);
}

TEST(InputVariables, WhatLooksLikeAMistakeIsPointedOut) {
  const Program program;
  std::string content = "id,a,w,y\n";
  for (int i = 0; i < 120; ++i) {
    content += std::to_string(7 * i) + "," + std::to_string(0.5 * i) + ",0.75," +
               (i % 3 == 0 ? "yes\n" : (i % 3 == 1 ? "yes \n" : "no\n"));
  }
  const auto plain = program.Run("supervised --target y --exclude w", content);
  const auto weighted = program.Run("supervised --target y --weight w --exclude w,y", content);
  for (const char* part : {"column 'w' is the weight, which cannot be excluded\n",
                           "column 'y' is a target, which cannot be excluded\n"}) {
    EXPECT_NE(weighted.err.find(part), std::string::npos) << weighted.err;
  }
  for (const char* part :
       {"column 'id' has another whole number in every record, as identifiers have; --exclude 'id'",
        "column 'y': 'yes' and 'yes ' are two categories"}) {
    EXPECT_NE(plain.err.find(part), std::string::npos) << plain.err;
  }
  EXPECT_EQ(plain.err.find("'a'"), std::string::npos) << plain.err;
  EXPECT_NE(
      weighted.err.find("column 'w': 120 weights are no whole numbers and were rounded; their "
                        "total changed from 90 to 120 (+33.33%)"),
      std::string::npos)
      << weighted.err;
}

TEST(InputVariables, ATargetHasAtMost256Categories) {
  const Program program;
  std::string content = "a,y\n";
  for (int i = 0; i < 256; ++i) content += "1," + std::to_string(i) + "\n";
  EXPECT_EQ(program.Run("supervised --target y", content).exitCode, 0);
  const auto outcome = program.Run("supervised --target y", content + "1,256\n");
  EXPECT_NE(outcome.err.find("input:258: column 'y': a target has at most 256 different values"),
            std::string::npos)
      << outcome.err;
}

}  // namespace
