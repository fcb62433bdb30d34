#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "cli/handmadebins.h"
#include "cli/program.h"

namespace {

using nlohmann::json;

// The bins made by hand with 8 missing cases of 'a', as a later version of the format has them.
std::string BinsWithMissing() {
  std::string text = kHandMadeBins;
  const auto put = [&](const std::string& from, const std::string& to) {
    text.replace(text.find(from), from.size(), to);
  };
  put("\"version\": 1", "\"version\": 2");
  put("\"weight_with_missing\": 8",
      "\"weight_with_missing\": 16, \"missing\": {\"weight\": 8, \"class_weights\": [8, 0]}");
  return text;
}

struct ApplyExample {
  const char* name;
  std::string options;
  std::string input;
  std::string output;
};

const ApplyExample kExamples[] = {
    {"BordersAndEnds", "", "c,a\nx,1\nx,1.0000000000000002\nx,2.5\nx,-1e999\nx,inf\n",
     "c,a,a_bin,c_bin\nx,1,0,0\nx,1.0000000000000002,1,0\nx,2.5,1,0\n"
     "x,-1e999,0,0\nx,inf,,0\n"},
    {"Missing", "--missing-as ?,",
     "a,c\n,x\nNA,x\n\"NA\",x\nnan,x\n9.0,x\n90,x\n1e308,q\n1,other\n1,\n",
     "a,c,a_bin,c_bin\n,x,\"?,\",0\nNA,x,\"?,\",0\n\"NA\",x,\"?,\",0\nnan,x,\"?,\",0\n"
     "9.0,x,\"?,\",0\n90,x,\"?,\",0\n1e308,q,\"?,\",\"?,\"\n1,other,0,\"?,\"\n1,,0,\"?,\"\n"},
    {"Labels", "--as label --suffix _band", "a,c\n2,\"y, z\"\n7,x\n",
     "a,c,a_band,c_band\n2,\"y, z\",\"(1, 2.5]\",\"{\"\"y, z\"\"}\"\n"
     "7,x,\"(2.5, +inf)\",{x}\n"},
    // Events ("yes") 3, 0, 1 of 4, others 1, 2, 1 of 4.
    {"WeightOfEvidence", "--as woe --replace", "c,a,t\nx,0,\nx,2,\nx,3,\n",
     "c,a,t\n0,1.0986122886681098,\n0,-inf,\n0,0,\n"},
    {"KeepsTheOtherColumns", "--target t",
     "\xEF\xBB\xBF\"no\"\"te\",a,c,\"\",\r\n\"x\ny\",3,x,\"\",ab\"c\r\n, 0 ,\"x\",,\r\n",
     "\"no\"\"te\",a,c,\"\",,a_bin,c_bin\n\"x\ny\",3,x,\"\",\"ab\"\"c\",2,0\n"
     ", 0 ,\"x\",,,0,0\n"},
    {"OtherDelimiterAndTexts", "--delimiter ; --na - --as label", "a;c\n-;\"x\"\n0;x\n",
     "a;c;a_bin;c_bin\n-;\"x\";;{x}\n0;x;(-inf, 1];{x}\n"},
    {"OtherEvent", "--as woe --event no --woe-adjust 1", "c,a\nx,0\nx,\n",
     "c,a,a_bin,c_bin\nx,0,-0.6931471805599453,0\nx,,,0\n"},
    {"HeaderOnly", "", "a,c\n", "a,c,a_bin,c_bin\n"}};

TEST(Apply, WritesBins) {
  const Program program;
  program.Write("bins.json", kHandMadeBins);
  for (const auto& [name, options, input, output] : kExamples) {
    const auto outcome = program.Run("apply bins.json " + options, input);
    EXPECT_EQ(outcome.exitCode, 0) << name << outcome.err;
    EXPECT_EQ(outcome.out, output) << name;
  }
}

TEST(Apply, WritesAFileOnceAllRecordsAreThereAndNoneThatItReads) {
  const Program program;
  program.Write("bins.json", kHandMadeBins);
  program.Write("in.csv", "a,c\n0,x\n");
  const std::string output = program.Run("apply bins.json in.csv").out;
  EXPECT_EQ(program.Run("apply -o out.csv bins.json in.csv").out, "");
  EXPECT_EQ(program.Read("out.csv"), output);
  EXPECT_EQ(program.Run("apply -o out.csv bins.json -", "a,c\n0,x\n0\n").exitCode, 1);
  EXPECT_EQ(program.Read("out.csv"), output);
  for (const char* const input : {"in.csv", "bins.json"}) {
    const std::string before = program.Read(input);
    EXPECT_EQ(program.Run("apply bins.json in.csv -o " + std::string(input)).exitCode, 2) << input;
    EXPECT_EQ(program.Read(input), before);
  }
}

TEST(Apply, ReadsNumbersAsTheRunDidUnlessToldOtherwise) {
  const Program program;
  std::string records = "a;y\n";
  for (int i = 0; i < 9; ++i) records += "1.500,5;n\n2.500;n\n3.500,25;p\n4.500;p\n";
  program.Write("in.csv", records + "-1.999,5;n\n-1999,50;n\n");
  const auto run = program.Run(
      "supervised -t y in.csv --json b.json --decimal , --thousands . --na \"-1.999,5\"");
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const json source = json::parse(program.Read("b.json"))["source"];
  EXPECT_EQ(source["decimal"], ",");
  EXPECT_EQ(source["thousands"], ".");
  EXPECT_EQ(source["na"], (json{"NA", "-1999.5"}));
  const auto plain = program.Run("apply b.json in.csv");
  EXPECT_EQ(plain.out.rfind("a;y;a_bin\n1.500,5;n;0\n2.500;n;0\n3.500,25;p;1\n4.500;p;1\n", 0), 0U)
      << plain.out;
  EXPECT_NE(plain.out.find("\n-1.999,5;n;\n-1999,50;n;\n"), plain.out.npos) << plain.out;
  EXPECT_EQ(
      program.Run("apply b.json --decimal . --thousands '' --delimiter ,", "a,y\n3.5,n\n").out,
      "a,y,a_bin\n3.5,n,0\n");
  const auto clash = program.Run("apply b.json in.csv --decimal .");
  EXPECT_EQ(clash.exitCode, 2);
  EXPECT_NE(clash.err.find("--thousands: give one"), clash.err.npos) << clash.err;

  const std::string quoted = "a,y\n\"1,5\",n\n\"2,5\",p\n";
  const std::string make = "supervised -t y --json ";
  ASSERT_EQ(program.Run(make + "q.json --decimal , --delimiter ,", quoted).exitCode, 0);
  EXPECT_EQ(program.Run("apply q.json", quoted).out, "a,y,a_bin\n\"1,5\",n,0\n\"2,5\",p,1\n");
  EXPECT_EQ(program.Run("apply q.json --as woe --woe-adjust 0.5", quoted).out,
            "a,y,a_bin\n\"1,5\",n,\"-1,0986122886681098\"\n\"2,5\",p,\"1,0986122886681098\"\n");
  ASSERT_EQ(program.Run(make + "p.json", "a,y\n1.5,n\n2.5,p\n").exitCode, 0);
  EXPECT_EQ(program.Run("apply p.json --decimal ,", quoted).exitCode, 2) << "';' may be meant";
  EXPECT_EQ(program.Run("apply p.json --decimal , --delimiter ,", quoted).exitCode, 0);
}

TEST(Apply, WritesMissingValuesAsTheirBin) {
  const Program program;
  program.Write("bins.json", BinsWithMissing());
  const std::pair<std::string, std::string> examples[] = {
      {"", ",0\n,\n"},
      {"--as label", "missing,{x}\nmissing,\n"},
      {"--as label --missing-as ''", ",{x}\n,\n"},
      {"--as woe --quiet --missing-as 0", "0,0\n0,0\n"},
      {"--as woe", "inf,0\ninf,\n"}};
  for (const auto& [options, output] : examples) {
    const auto outcome = program.Run("apply --replace bins.json " + options, "a,c\n,x\n9,new\n");
    EXPECT_EQ(outcome.out, "a,c\n" + output) << options << outcome.err;
  }
  const std::string err = program.Run("apply --as woe bins.json", "a,c\n1,x\n9,x\n2,\n").err;
  EXPECT_EQ(err,
            "mcbin: weight of evidence for the target 't', event yes\n"
            "mcbin: an infinite weight of evidence, as the bin lacks a class: 2 records in a_bin; "
            "--woe-adjust WEIGHT makes them finite\n"
            "mcbin: an empty field, as the bin file has no weight of evidence for these: 1 records "
            "in c_bin; --missing-as TEXT fills it\n");
  // The one of the missing values is not in the export, that of the second bin is.
  const auto exported = program.Run("export --format python --as woe --missing-as 0 bins.json");
  EXPECT_NE(exported.err.find("made from 2 of 16 in 'a'"), std::string::npos) << exported.err;
}

TEST(Apply, TellsOfUnknownCategories) {
  const Program program;
  program.Write("bins.json", kHandMadeBins);
  const auto outcome = program.Run("apply bins.json", "a,c\n1,x\n1,new\n1,q\n1,new\n");
  EXPECT_EQ(outcome.err,
            "mcbin: column 'c': values that the bin file does not know count as missing: 2, the "
            "first is 'new' in line 3\n");
}

TEST(FailedAttributes, AreNamedAndHaveNoBins) {
  json bins = json::parse(kHandMadeBins);
  const auto fail = [&](std::size_t index) {
    json& result = bins["results"][index];
    result["status"] = {{"code", 120021}, {"severity", "error"}, {"text", ""}};
    for (const char* list : {"cut_points", "bin_weights", "class_weights"}) {
      result[list] = json::array();
    }
    return bins.dump();
  };
  const Program program;
  program.Write("in.csv", "a,c,t\n0,x,yes\n");
  program.Write("one.json", fail(0));
  program.Write("none.json", fail(1));
  EXPECT_EQ(program.Run("apply one.json in.csv").out, "a,c,t,c_bin\n0,x,yes,0\n");
  for (const std::string command : {"apply", "evaluate", "export --format python", "report"}) {
    const std::string input = command == "apply" || command == "evaluate" ? " in.csv" : "";
    const std::string told = program.Run(command + " one.json" + input).err;
    EXPECT_NE(told.find("without bins because of an error: 'a' (a temporary"), told.npos)
        << command;
    const auto none = program.Run(command + " none.json" + input);
    EXPECT_EQ(none.exitCode, 1) << command;
    EXPECT_NE(none.err.find("none.json: no attribute has bins"), std::string::npos) << none.err;
  }
}

// A bin file made by hand, so that every number can be followed.
TEST(Evaluate, PrintsBothSides) {
  const Program program;
  program.Write("bins.json", kHandMadeBins);
  program.Write("new.csv",
                "a,c,t,w\n0,x,yes,2\n2,x,no,1\n3,x,yes,1\n9,x,no,5\n3,x,maybe,5\n5,x,no,0\n");
  const auto outcome = program.Run("evaluate --weight w bins.json new.csv");
  EXPECT_EQ(outcome.exitCode, 0);
  for (const char* part :
       {"  a             3     0.0000     -  0.8113  0.6250  1.0000  0.5000  1.0000  differ\n",
        "  data: weight 4 valid, 5 missing, 5 without target; from 0 to 3; entropy 0.0000, gain "
        "0.8113 bits; "
        "information value +inf\n",
        "  (-inf, 1]         4     2  50.0%  50.0%    3     2       75.0%  100.0%              "
        "1.0986  "
        "+inf\n"}) {
    EXPECT_NE(outcome.out.find(part), std::string::npos) << part << outcome.out;
  }
  EXPECT_NE(outcome.err.find("1 of 6 records dropped for their weight"), std::string::npos);
  const auto summary = program.Run("evaluate --weight w --summary --format csv bins.json new.csv");
  EXPECT_NE(summary.err.find("has not counted its missing cases as a bin, so missing values"),
            std::string::npos)
      << summary.err;
}

}  // namespace
