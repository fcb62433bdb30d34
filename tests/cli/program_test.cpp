#include "cli/program.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace {

using nlohmann::json;

// Which the program once took 90 kB a column for, and a time that grew with their square.
TEST(WideTable, TakesLittleMemoryForEachColumn) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the sanitizers take memory themselves";
#endif
  constexpr int kColumns = 20000;
  std::string table = "c0";
  for (int i = 1; i < kColumns; ++i) table += ",c" + std::to_string(i);
  for (const char* value : {"1", "2", "3"}) {
    table += '\n';
    for (int i = 0; i < kColumns; ++i) table += std::string(i > 0 ? 1 : 0, ',') + value;
  }
  for (const char* command : {"supervised --target c0 -", "equal-frequency --bins 2 -"}) {
    EXPECT_EQ(Program().Run(command, table).exitCode, 0) << command;
  }
  rusage used{};
  getrusage(RUSAGE_CHILDREN, &used);
  EXPECT_LT(used.ru_maxrss, kColumns / 1024.0 * 7500) << "the largest program of all, in KiB";

  rlimit before{};
  getrlimit(RLIMIT_AS, &before);
  const rlimit small{rlim_t{1} << 29, before.rlim_max};
  setrlimit(RLIMIT_AS, &small);
  const auto refused = Program().Run("equal-frequency --bins 2 -", table);
  setrlimit(RLIMIT_AS, &before);
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_NE(refused.err.find("memory for 20000 variables of 3 records"), std::string::npos)
      << refused.err;
}

TEST(Supervised, RoundsWeightsAndCountsDroppedRecords) {
  const Program program;
  program.Write("w.csv", "a,y,w\n1,x,1.5\n2,z,2\n3,x,0\n4,x,\n5,x,0.4\n6,x,99\n");
  const std::string command = "supervised --target y --weight w --missing w=99 w.csv --json - ";
  const auto outcome = program.Run(command);
  EXPECT_EQ(json::parse(outcome.out)["results"][0]["valid_weight"], 4);
  EXPECT_NE(outcome.err.find("6 records read, 4 dropped for their weight (2 missing, 1 zero, 1 "
                             "rounded to zero)"),
            std::string::npos)
      << outcome.err;
  program.Run("supervised --target y --weight w w.csv --json bins.json");
  program.Write("new.csv", "a,y\n1,x\n");
  const auto unweighted = program.Run("evaluate bins.json new.csv");
  EXPECT_EQ(unweighted.exitCode, 1);
  EXPECT_NE(unweighted.err.find("'w', the weight in the bin file; --weight NAME names another, "
                                "--unweighted"),
            std::string::npos)
      << unweighted.err;
  const json truncated = json::parse(program.Run(command + "--rounding truncate").out);
  EXPECT_EQ(truncated["results"][0]["valid_weight"], 3);
}

TEST(BinFile, SaysWhatMadeIt) {
  const Program program;
  program.Write("bins.json", "an older file");
  const std::string name = "gr\"o\\\xC3\xB6\t\xC3\x9F";
  const std::string quoted = "\"gr\"\"o\\\xC3\xB6\t\xC3\x9F\"";
  program.Write("d.csv", "a;" + quoted + "\n1;\"l 1\"\n2;\"l\n2\"\n");
  const auto outcome = program.Run(
      "supervised --delimiter ; --closed left --small-bins 0.25 --prebin-above 9 --prebins 8 " +
      ("--event l\n2 --woe-adjust 0.5 --classes l\n2 --json bins.json d.csv --target " + quoted));
  ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
  EXPECT_EQ(program.Files(), (std::vector<std::string>{"bins.json", "d.csv"}));
  const json bins = json::parse(program.Read("bins.json"));
  EXPECT_EQ(bins["algorithm"], "supervised");
  EXPECT_EQ(bins["closed"], "left");
  EXPECT_EQ(bins["settings"],
            json({{"prebin_above", 9}, {"prebins", 8}, {"small_bins", 0.25}, {"woe_adjust", 0.5}}));
  EXPECT_EQ(bins["source"]["name"], "d.csv");
  EXPECT_EQ(bins["source"]["records"], 2);
  EXPECT_EQ(bins["targets"], json({{{"name", name},
                                    {"kind", "string-categorical"},
                                    {"categories", {"l\n2", "l 1"}},
                                    {"event", "l\n2"}}}));
  EXPECT_NE(outcome.out.find("gr\"o\\\xC3\xB6\\t\xC3\x9F"), std::string::npos) << outcome.out;
}

TEST(Refine, GivesTheSameFromABinFileAndAfterARun) {
  const Program program;
  const std::string run = "supervised --target diagnosis examples/wdbc.csv --json ";
  const std::string demands = " --max-bins 2 --monotonic either --min-share 0.2";
  ASSERT_EQ(program.Run(run + "bins.json").exitCode, 0);
  ASSERT_EQ(program.Run(run + "after.json" + demands).exitCode, 0);
  const auto refined = program.Run("refine bins.json -o refined.json" + demands);
  ASSERT_EQ(refined.exitCode, 0) << refined.err;
  EXPECT_NE(refined.out.find(
                "\n  refined to have at most 2 bins, at least 0.2 of the weight that is not "
                "missing in every "
                "bin, an increasing or decreasing event rate, and then the most information gain; "
                "event 'malignant'\n"),
            std::string::npos)
      << refined.out;
  EXPECT_EQ(json::parse(program.Read("refined.json")), json::parse(program.Read("after.json")));
  EXPECT_EQ(program.Run("apply refined.json examples/wdbc.csv").exitCode, 0);

  for (const char* quiet : {"", " --quiet"}) {
    const auto single = program.Run("refine bins.json --strict --min-share 1" + std::string(quiet));
    EXPECT_EQ(single.exitCode, 0);
    EXPECT_EQ(single.err.find("mcbin: refining left a single bin of '") == 0, *quiet == '\0')
        << single.err;
  }

  program.Run("refine bins.json -o other.json --max-bins 2 --event benign --woe-adjust 0.5 " +
              std::string("--classes malignant"));
  const json other = json::parse(program.Read("other.json"));
  EXPECT_EQ(other["targets"][0]["event"], "benign");
  EXPECT_EQ(other["targets"][0]["categories"][0], "malignant");
  EXPECT_EQ(other["settings"]["woe_adjust"], 0.5);

  const auto impossible = program.Run("refine bins.json -o none.json --min-bins 9");
  EXPECT_EQ(impossible.exitCode, 1);
  EXPECT_NE(impossible.err.find("cannot be joined to have at least 9 bins"), std::string::npos);
  EXPECT_EQ(program.Run("refine bins.json").exitCode, 2);
  EXPECT_EQ(program.Files(),
            (std::vector<std::string>{"after.json", "bins.json", "other.json", "refined.json"}));
}

TEST(Evaluate, SetsFilesSideBySideAlsoWithoutTarget) {
  const Program program;
  ASSERT_EQ(
      program.Run("supervised -t y --json b.json --quiet", "a,y\n1,n\n2,n\n3,n\n4,y\n5,y\n6,y\n")
          .exitCode,
      0);
  program.Write("june.csv", "y,a\nn,1\nn,2\ny,4\ny,5\n");
  program.Write("july.csv", "a\n1\n4\n");
  const auto both = program.Run("evaluate b.json june.csv july.csv");
  EXPECT_EQ(both.exitCode, 0) << both.err;
  for (const char* part :
       {"\nStability\n  attribute  june.csv  july.csv\n  a            0.0000    0.0000\n",
        "\nGini\n  attribute  bin file  june.csv  july.csv\n  a            1.0000    1.0000        "
        " -\n",
        "\na by y: event rate\n  interval   bin file  june.csv  july.csv\n"
        "  (-inf, 3]      0.0%      0.0%         -\n"}) {
    EXPECT_NE(both.out.find(part), std::string::npos) << part << both.out;
  }
  EXPECT_NE(both.err.find("july.csv: there is no target column 'y'"), std::string::npos);
  program.Write("august.csv", "a,y\n1,\n4,?\n");
  const auto later = program.Run("evaluate b.json --summary august.csv june.csv");
  EXPECT_EQ(later.exitCode, 0) << later.err;
  EXPECT_NE(later.err.find("august.csv: no record has a known class of the target 'y', so only"),
            std::string::npos)
      << later.err;
  const auto alone = program.Run("evaluate b.json august.csv");
  EXPECT_EQ(alone.exitCode, 1);
  EXPECT_NE(alone.err.find("without this column shares and stability are"), std::string::npos);
  const json records = json::parse(program.Run("evaluate b.json july.csv --format json").out);
  EXPECT_EQ(records.size(), 2u);
  EXPECT_EQ(records[1]["data_share"], 0.5);
}

TEST(EqualFrequency, NotesBinsWithoutACaseOfTheTarget) {
  const auto run = Program().Run("equal-frequency --bins 2 -t y", "a,y\n1,n\n2,y\n3,\n4,\n");
  EXPECT_NE(run.err.find("a bin has no case with the target, and so no weight of evidence: 'a'\n"),
            std::string::npos)
      << run.err;
}

// A cut point moved by hand makes the counts beside it stale.
TEST(Evaluate, UpdatesTheCountsOfMovedCutPoints) {
  const Program program;
  const std::string run = "supervised -t diagnosis --attributes worst_area,worst_texture ";
  ASSERT_EQ(program.Run(run + "examples/wdbc.csv --json bins.json").exitCode, 0);
  const json original = json::parse(program.Read("bins.json"));
  json moved = original;
  moved["results"][0]["cut_points"][0] = 710;
  program.Write("moved.json", moved.dump());
  moved["results"][0].erase("counted_cut_points");
  program.Write("unmarked.json", moved.dump());
  const auto warns = [&](const std::string& command) {
    const std::string err = program.Run(command).err;
    const bool namesOther = err.find("worst_texture") != std::string::npos;
    return !namesOther && err.find("these bins: 'worst_area'; 'mcbin eval") != std::string::npos;
  };
  const std::string data = " examples/wdbc.csv";
  for (const char* command :
       {"apply --as woe ", "apply --quiet --as woe ", "apply --as label ", "evaluate ",
        "export --format sql --table t --woe-adjust 1 --as woe ", "report "}) {
    const std::string words = command;
    const bool readsData = words[0] == 'a' || words.substr(0, 2) == "ev";
    const bool usesWeights = words[0] != 'a' || words == "apply --as woe ";
    EXPECT_EQ(warns(words + "moved.json" + (readsData ? data : "")), usesWeights) << command;
    EXPECT_FALSE(warns(words + "bins.json" + (readsData ? data : ""))) << command;
    EXPECT_FALSE(warns(words + "unmarked.json" + (readsData ? data : ""))) << command;
  }
  EXPECT_TRUE(warns("refine --max-bins 2 moved.json --json refined.json"));
  EXPECT_TRUE(warns("report refined.json")) << "joined bins are no better than what was joined";

  ASSERT_EQ(program.Run("evaluate moved.json --update new.json" + data).exitCode, 0);
  EXPECT_FALSE(warns("report new.json"));
  const json updated = json::parse(program.Read("new.json"));
  EXPECT_NE(updated["results"][0]["class_weights"], original["results"][0]["class_weights"]);
  EXPECT_EQ(updated["results"][0]["cut_points"], moved["results"][0]["cut_points"]);
  json same = original;
  same["results"][1]["distinct_values"] = 0;
  EXPECT_EQ(updated["results"][1], same["results"][1]);
  EXPECT_EQ(updated["source"], original["source"]);

  program.Write("none.csv", "worst_area,worst_texture\n1,2\n");
  EXPECT_EQ(program.Run("evaluate bins.json none.csv --update none.json").exitCode, 1);
  EXPECT_EQ(program.Run("evaluate bins.json none.csv none.csv --update none.json").exitCode, 2);
  EXPECT_EQ(program.Files(),
            (std::vector<std::string>{"bins.json", "moved.json", "new.json", "none.csv",
                                      "refined.json", "unmarked.json"}));
}

// From January 1 on a day each, of which the class changes after the 20th, and at the 30th again.
std::string Days() {
  std::string days = "when,y\n";
  for (int day = 1; day <= 40; ++day) {
    const bool january = day <= 31;
    days += january ? "2024-01-" : "2024-02-";
    days += std::to_string(100 + day - (january ? 0 : 31)).substr(1);
    days += day > 20 && day <= 30 ? ",b\n" : ",a\n";
  }
  return days;
}

TEST(Times, AreReadBinnedAndShownAsDates) {
  const Program program;
  program.Write("days.csv", Days() + "NA,a\nnan,b\n");
  const auto has = [&](const std::string& command, const std::string& text) {
    const auto outcome = program.Run(command);
    EXPECT_NE((outcome.out + outcome.err).find(text), std::string::npos)
        << command << '\n'
        << outcome.out << outcome.err;
  };
  const std::string run = "supervised -t y --missing when=2024-02-09,:2024-01-02 days.csv ";
  has(run + "--report b.html", "weight 37 valid, 5 missing");
  const std::string again = "supervised -t y days.csv --json b.json ";
  has(again, "2024-01-20, 2024-01-30  ok");
  has(again, "(2024-01-20, 2024-01-30] ");
  has(again + "--format csv --summary", ",2024-01-20 2024-01-30,40,2,40,2024-01-01,2024-02-09,");
  has(again + "--format json", "\"low\": \"2024-01-20\", \"high\": \"2024-01-30\"");
  has("report b.json", "2024-01-20");
  const json bins = json::parse(program.Read("b.json"));
  EXPECT_EQ(bins["attributes"][0]["unit"], "seconds since 1970-01-01T00:00:00Z");
  EXPECT_EQ(bins["results"][0]["cut_points"], json({1705708800, 1706572800}));

  program.Write("new.csv",
                "when\n2024-01-20T00:00:00Z\n2024-01-20 00:00:00.5\n"
                "2024-01-20T01:00+01:00\n1900-01-01\nNA\n");
  EXPECT_EQ(program.Run("apply b.json new.csv").out,
            "when,when_bin\n2024-01-20T00:00:00Z,0\n2024-01-20 00:00:00.5,1\n"
            "2024-01-20T01:00+01:00,0\n1900-01-01,0\nNA,\n");
  has("evaluate b.json days.csv", "equal");
  has("evaluate b.json days.csv", "from 2024-01-01 to 2024-02-09");
  has("refine b.json --breaks when=2024-01-20", "(-inf, 2024-01-20]");
  has("refine b.json --breaks when=2024-01-21", "no cut point 2024-01-21; nearest");
  for (const char* text : {"2024-02-30", "7"}) {
    program.Write("wrong.csv", "when\n" + std::string(text) + "\n");
    has("apply b.json wrong.csv",
        "wrong.csv:2: '" + std::string(text) + "' in column 'when' is not a date");
    program.Write("half.csv", "when,y\n2024-01-20,a\n" + std::string(text) + ",b\n");
    has("supervised -t y half.csv", "'when' (line 3: " + std::string(text) + " is no date)");
    program.Write("stray.csv", Days() + text + ",a\n");
    has("supervised -t y stray.csv", "1 of 41 fields is no date: '" + std::string(text) +
                                         "'; read it as missing with --na '" + text + "'");
  }
  has("export --format sql --table t b.json",
      "WHEN t.\"when\" IS NULL THEN NULL\n"
      "    WHEN t.\"when\" <= TIMESTAMP '2024-01-20 00:00:00' THEN 0\n");
  has("export --format sql --dialect sqlite --table t b.json", "'when' holds dates, for which");
  has("export --format pmml b.json", "<Constant dataType=\"dateTime\">2024-01-20T00:00:00</");
  program.Run("supervised -t y days.csv --na 2024-02-09 --json na.json");
  has("export --format sql --table t na.json", "OR t.\"when\" = TIMESTAMP '2024-02-09 00:00:00'");
  has("export --format python b.json", "_interval_bins(_times(columns[\"when\"]), [1705708800.0");
}

TEST(SeveralFiles, AreReadAsOne) {
  const Program program;
  const std::string may = "a,b,y\n1,u,n\n2,u,n\n3,u,n\n\"4\",u,n\n";
  const std::string june = "5,v,p\n6,v,p\n7,v,p\n8,\"v\nw\",p\n";
  program.Write("may.csv", may);
  program.Write("june.csv", "a,b,y\r\n" + june);
  program.Write("other.csv", "a,c,y\n");
  program.Write("less.csv", "a,b\n");
  program.Write("wrong.csv", "a,b,y\n1,u,n\n2,u\n");
  program.Write("text.csv", "a,b,y\n1,u,n\nq,u,p\n");
  const std::string run = "supervised -t y --quiet --json - ";
  json one = json::parse(program.Run(run, may + june).out);
  one["source"]["name"] = "may.csv, june.csv";
  EXPECT_EQ(json::parse(program.Run(run + "may.csv june.csv").out), one);
  one["source"]["name"] = "standard input, june.csv";
  EXPECT_EQ(json::parse(program.Run(run + "- june.csv", may).out), one);
  const std::pair<const char*, const char*> kFaults[] = {
      {"may.csv other.csv", "other.csv: column 2 is 'c', but 'b' in 'may.csv'; several files"},
      {"may.csv june.csv less.csv", "less.csv: 2 columns, but 3 in 'may.csv'; several files"},
      {"may.csv june.csv none.csv", "none.csv: cannot open it"},
      {"may.csv wrong.csv", "wrong.csv:3: 2 fields found, 3 expected"},
      {"may.csv june.csv text.csv --attributes a", "text.csv:3: 'q' in column 'a' is not a number"},
      {"june.csv may.csv text.csv --continuous a", "text.csv:3: 'q' in column 'a' is not a number"},
      {"june.csv text.csv", "not numeric: 'b' (june.csv:2: v)"},
      {"may.csv june.csv ./may.csv", "'./may.csv' has been named before; its records count once"},
      {"may.csv june.csv --json may.csv", "--json 'may.csv': this is the input"}};
  for (const auto& [files, fault] : kFaults) {
    const auto outcome = program.Run(std::string("supervised -t y ") + files);
    EXPECT_NE(outcome.err.find(fault), std::string::npos) << files << '\n' << outcome.err;
  }
}

TEST(Help, IsShortOrLongAndComesWithoutAQuestion) {
  const Program program;
  const auto alone = program.Run("");
  EXPECT_EQ(alone.exitCode, 2);
  EXPECT_EQ(alone.out, program.Run("help").out);
  EXPECT_EQ(program.Run("help refine").out, program.Run("refine --help").out);
  const std::string brief = program.Run("supervised -h").out;
  EXPECT_NE(brief.find("Refined bins:\n  --max-bins, --min-bins, "), std::string::npos) << brief;
  EXPECT_LT(3 * brief.size(), program.Run("supervised --help").out.size());
  EXPECT_EQ(program.Run("equal-frequency --bin 2 --attribute proline examples/wine.csv").out,
            program.Run("equal-frequency --bins 2 --attributes proline examples/wine.csv").out);
}

TEST(NoCut, IsAResultAndNoWarning) {
  const Program program;
  std::string noise = "a,y\n";
  for (int i = 0; i < 60; ++i) noise += std::to_string(i % 6) + (i % 7 < 3 ? ",n\n" : ",y\n");
  const auto run = program.Run("supervised --target y --strict --json in.json -", noise);
  EXPECT_EQ(run.exitCode, 0) << run.out;
  EXPECT_NE(run.out.find("; best split at "), std::string::npos) << run.out;
  const json split = json::parse(program.Read("in.json"))["results"][0]["best_split"];
  EXPECT_EQ(split["meaning"], "nothing to find");
  EXPECT_LT(split["gain"], split["threshold"]);
}

TEST(Strict, TurnsAWarningIntoAnExitCode) {
  const Program program;
  program.Write("in.csv", "a,y\n1,x\n1,z\n");
  const auto tolerant = program.Run("supervised --target y in.csv");
  EXPECT_EQ(tolerant.exitCode, 0);
  EXPECT_NE(tolerant.out.find("; the only value is 1\n"), std::string::npos) << tolerant.out;
  EXPECT_EQ(program.Run("supervised --target y in.csv --strict").exitCode, 3);
  EXPECT_EQ(program.Run("supervised --target species examples/iris.csv --strict").exitCode, 0);
}

TEST(IdColumn, IsLeftOutUnlessItIsAskedFor) {
  std::string content = "id,a,y\n";
  for (int i = 0; i < 3000; ++i) {
    content += "u" + std::to_string(i) + "," + std::to_string(i % 10) + (i % 2 ? ",x\n" : ",z\n");
  }
  const Program program;
  const auto outcome = program.Run("supervised --target y", content);
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_NE(outcome.err.find("'id' (line 2: u0; the first 256 are all"), std::string::npos)
      << outcome.err;
  const auto asked = program.Run("supervised --target y --categorical id", content);
  EXPECT_EQ(asked.exitCode, 1);
  EXPECT_NE(asked.err.find(":258: column 'id'"), std::string::npos) << asked.err;
}

// What the guide shows is what the program prints; "..." stands for the rest.
TEST(Guide, ShowsTheRealOutput) {
  std::ifstream guide(MCBINNING_EXAMPLES_DIR "/../docs/command-line.md");
  const Program program;
  int commandsRun = 0;
  for (std::string line; std::getline(guide, line);) {
    const std::string prompt = "$ mcbin ";
    if (line.rfind(prompt, 0) != 0 || line.find('|') != std::string::npos) continue;
    const std::string command = line.substr(prompt.size());
    std::string shown;
    while (std::getline(guide, line) && line != "```" && line != "...") shown += line + "\n";
    const auto outcome = program.Run(command);
    const std::string& printed = outcome.exitCode == 0 ? outcome.out : outcome.err;
    EXPECT_EQ(line == "..." ? printed.substr(0, shown.size()) : printed, shown);
    ++commandsRun;
  }
  EXPECT_EQ(commandsRun, 14);
}

}  // namespace
