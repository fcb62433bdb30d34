// What every command answers to input and options that it cannot use.

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "cli/handmadebins.h"
#include "cli/program.h"
#include "support/rowname.h"

namespace {

struct Refusal {
  const char* name;
  std::string command;
  std::string input;  // the content of in.csv
  int exitCode;
  const char* message;  // a part of it
  const char* standardInput = "/dev/null";
  const char* standardOutput = "";  // where it is not captured
};
void PrintTo(const Refusal& row, std::ostream* os) { *os << row.name; }

class RefusalTest : public testing::TestWithParam<Refusal> {};

TEST_P(RefusalTest, SaysWhyAndLeavesAllAsItWas) {
  const Refusal& row = GetParam();
  const Program program;
  program.Write("bins.json", kHandMadeBins);
  program.Write("in.csv", row.input);
  const auto outcome =
      program.Run(row.command, Program::Setting{row.standardInput, row.standardOutput});
  EXPECT_EQ(outcome.exitCode, row.exitCode) << outcome.err;
  EXPECT_NE(outcome.err.find(row.message), std::string::npos) << outcome.err;
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(program.Files(), (std::vector<std::string>{"bins.json", "in.csv"}));
  EXPECT_EQ(program.Read("bins.json"), kHandMadeBins);
  EXPECT_TRUE(program.Read("in.csv") == row.input);
  EXPECT_LT(outcome.err.size(), 1000u);
}

const std::string kRun = "supervised --target y --json out.json in.csv ";
const std::string kApply = "apply bins.json in.csv ";
const std::string kExport = "export bins.json --format ";
const std::string kGood = "a,y,w\n1,x,1\n2,z,2\n";

const Refusal kOfInput[] = {
    {"MissingFile", "supervised --target y no.csv", "", 1, "no.csv: cannot open it: No such file"},
    {"Directory", "supervised --target y .", "", 1, "this is a directory"},
    {"EmptyInput", "supervised --target y", "", 1, "standard input: the file is empty"},
    {"UnknownColumn", kRun + "--weight heights", "a,y,weight\n1,x,1\n", 1,
     "in.csv: there is no column 'heights'; did you mean 'weight'?"},
    {"ColumnWithBlanks", kRun, "a, y \n1,x\n", 1,
     "in.csv: there is no column 'y'; did you mean ' y '?"},
    {"OtherDelimiter", kRun, "a;y\n1;x\n", 1, "is --delimiter ';' missing?"},
    {"PatternOfNoColumn", kRun + "--exclude b*", kGood, 1, "in.csv: no column matches 'b*'"},
    {"PointForDecimalComma", "apply bins.json in.csv --decimal , --delimiter ;", "a;c\n1.5;x\n", 1,
     "in.csv:2: '1.5' in column 'a' is not a number"},
    {"DuplicateColumn", kRun, "a,y,a\n1,x,2\n", 1,
     "in.csv:1: columns 1 and 3 have the same name 'a'"},
    {"TextWeight", kRun + "--weight w", "a,y,w\n1,x,1\n2,z,q\n", 1,
     "in.csv:3: the weight 'q' in column 'w' is not a number"},
    {"TooLongText", kRun, "a,y\n1," + std::string(5000, 't') + "\n", 1,
     "in.csv:2: column 'y': a target has values of at most 4096 bytes"},
    {"OneClass", kRun, "a,y\n1,x\n2,x\n", 1, "in.csv: the target 'y' has a single value"},
    {"NamedTextAttribute", kRun + "--attributes a", "a,y\n1,x\nq,z\n", 1,
     "in.csv:3: 'q' in column 'a' is not a number"},
    {"Infinity", kRun, "a,y\n1,x\n-inf,z\n", 1, "in.csv:3: the number '-inf'"},
    {"DecimalComma", kRun + "--delimiter ;", "a;y\n1,5;x\n2,5;z\n", 1,
     "no column can be binned; not numeric: 'a' (line 2: 1,5); '1,5' is a number with a decimal "
     "comma"},
    {"StrayTextsAlone", kRun, "a,y\n1,x\n2,z\n?,z\n", 1, "as missing with --na '?'"},
    {"NoAttribute", kRun, "a,y\nq,x\nr,z\n", 1, "in.csv: no column can be binned"},
    {"BinaryJunk", kRun, std::string("\x01\x02y\0\xFF,\n", 8), 1, "binary file"},
    {"LongLine", kRun, std::string(10'000'000, 'a'), 1, "there is no column 'y'"},
    {"TempDir", kRun + "--temp-dir /nowhere", kGood, 1,
     "cannot write temporary files in '/nowhere': No such file or directory; choose"},
    {"JsonDirectory", "supervised --target y --json /nowhere/out.json in.csv", kGood, 1,
     "/nowhere/out.json: cannot write it"},

    {"JsonWithoutName", "supervised --target y --json '' in.csv", kGood, 1,
     "error: '': cannot write it: No such file"},
    {"InputWithoutName", "supervised --target y ''", "", 1, "error: '': cannot open it: No such"},

    {"ApplyMissingColumn", kApply, "a,cc\n1,x\n", 1,
     "in.csv: there is no column 'c'; did you mean 'a', 'cc'?"},
    {"ApplyNoNumber", kApply, "a,c\n1,x\none,x\n", 1,
     "in.csv:3: 'one' in column 'a' is not a number"},
    {"ApplyNameTaken", kApply, "a,c,c_bin\n1,x,0\n", 1, "there is a column 'c_bin' already"},
    {"ApplySwappedFiles", "apply in.csv bins.json", "a,c\n", 1,
     "the bin file comes first, then the data"},
    {"ApplyNoHeader", kApply, "", 1, "there is no header row"},
    {"EvaluateNoRecord", "evaluate bins.json in.csv", "a,c,t\n", 1, "in.csv: there is no record"},
    {"EvaluateNoKnownClass", "evaluate bins.json in.csv", "a,c,t\n1,x,\n1,x,maybe\n", 1,
     "in.csv: no record has a class of the target 't'"},
    {"EvaluateNoWeight", "evaluate --weight w bins.json in.csv", "a,c,t,w\n1,x,yes,0\n", 1,
     "in.csv: no record has a usable weight"},
    {"BreaksOfNoColumn", kRun + "--breaks heigth=1", "height,y\n1,x\n2,z\n", 1,
     "did you mean 'height'?"},
    {"BreaksOfTarget", kRun + "--keep y=1", kGood, 1, "no bins of an attribute 'y'"},
    {"RatesOfThreeClasses", kRun + "--monotonic peak", "a,y\n1,x\n2,z\n3,v\n", 1, "'y' has 3"},
    {"EvaluateUnknownWeight", "evaluate --weight w bins.json in.csv", "a,c,t\n1,x,yes\n", 1,
     "in.csv: there is no column 'w'"},

    {"ExportNameTaken", kExport + "python --suffix ''", "", 1, "choose another --suffix"},
    {"ExportNoInfinity", kExport + "sql --dialect mysql --table x --as woe", "", 1,
     "is infinite, which --dialect mysql cannot say"},
    {"ExportNotXml", kExport + "pmml --suffix \x01", "", 1, "a control character"},
    {"ExportFullDisk", kExport + "python -o /dev/full", "", 1, "No space left"},
};

INSTANTIATE_TEST_SUITE_P(Input, RefusalTest, testing::ValuesIn(kOfInput), RowName);

const Refusal kOfUsage[] = {
    {"OptionByNearest", kRun + "--atributes a", kGood, 2,
     "there is no option '--atributes'; did you mean --attributes?"},
    {"OneDash", kRun + "-attributes a", kGood, 2, "did you mean --attributes?"},
    {"OptionOfNoCommand", "evaluate --frobnicate bins.json in.csv", kGood, 2,
     "there is no option '--frobnicate'\nRun mcbin evaluate --help"},
    {"WordForNumber", "equal-frequency --bins ten in.csv", kGood, 2,
     "--bins: a whole number from 2 to 2147483647 is expected, not 'ten'"},
    {"TablesInPlaceOfBinFile", "supervised -t y --json - --top 3 in.csv", kGood, 2,
     "--summary and --top out"},
    {"UnknownLetter", kRun + "-q", kGood, 2, "there is no option '-q'; did you mean --quiet?"},
    {"LetterInTheOtherCase", "supervised -T y in.csv", kGood, 2, "'-T'; did you mean -t?"},
    {"LetterOfTheTool", "-V", "", 2, "there is no option '-V'; did you mean --version?"},
    {"EmptyDelimiter", kRun + "--delimiter ''", kGood, 2, "--delimiter: give one ASCII character"},
    {"UnknownCommand", "bin", "", 2, "there is no command 'bin'; the commands are supervised,"},
    {"NearCommand", "aply", "", 2, "'aply'; did you mean apply? The commands are supervised,"},
    {"CommandByNearest", "suprvised", "", 2, "'suprvised'; did you mean supervised?"},
    {"HelpOfNoCommand", "help refne", "", 2, "'refne'; did you mean refine?"},
    {"OptionOfTheTool", "--hlep", "", 2, "did you mean --help?\nRun mcbin --help"},
    {"OptionByItsBeginning", kRun + "--sum", kGood, 2, "did you mean --summary?"},
    {"OptionForFile", "apply bins.json in.csv -o --quiet", kGood, 2,
     "-o: a value is missing before --quiet; write -o--quiet if"},
    {"OptionForBinFile", "supervised -t y in.csv --json --quiet", kGood, 2,
     "--json: a value is missing before --quiet; write --json=--quiet if"},
    {"NoTarget", "supervised in.csv", kGood, 2, "--target is required"},
    {"Choice", kRun + "--closed both", kGood, 2, "--closed: right or left is expected, not 'both'"},
    {"NoNumber", kRun + "--prebins many", kGood, 2, "--prebins"},
    {"OutOfRange", kRun + "--small-bins 1.5", kGood, 2, "--small-bins"},
    {"OneBin", "equal-frequency --bins 1 in.csv", kGood, 2, "--bins"},
    {"EventWithoutTarget", "equal-frequency --event x in.csv", kGood, 2,
     "--event requires --target"},
    {"RatesWithoutTarget", "equal-frequency --monotonic peak in.csv", kGood, 2, "need a --target"},
    {"ClassTwice", kRun + "--classes x,x", kGood, 2, "--classes: 'x' is named twice"},
    {"NameWithEqualsSign", kRun + "--keep a=b=1", kGood, 2,
     "'b=1' is neither a number nor a date; write a name with"},
    {"NegativePrebin", kRun + "--prebin-above -1", kGood, 2,
     "--prebin-above: a whole number from 0"},
    {"NegativeJobs", kRun + "--jobs -1", kGood, 2, "--jobs: a whole number from 0"},
    {"ThousandsAndDecimal", kRun + "--thousands .", kGood, 2, "is not the decimal mark"},
    {"ExcludedAttribute", kRun + "--attributes a --exclude a", kGood, 2, "and excluded"},
    {"Delimiter", kRun + "--delimiter ab", kGood, 2, "--delimiter"},
    {"TargetTwice", kRun + "--target y", kGood, 2, "column 'y' is named twice"},
    {"TargetIsAttribute", kRun + "--attributes y", kGood, 2, "cannot be a target and an attribute"},
    {"TargetIsWeight", kRun + "--weight y", kGood, 2, "cannot be a target and the weight"},
    {"BothKinds", kRun + "--categorical a --continuous a", kGood, 2, "column 'a' is both"},
    {"MissingText", kRun + "--missing a=none", kGood, 2, "--missing 'a': 'none' is not a number"},
    {"JsonOverInput", "supervised --target y --json ./in.csv in.csv", kGood, 2,
     "this is the input"},
    {"ReportOverInput", "equal-frequency in.csv --report ./in.csv", kGood, 2, "--report"},
    {"ReportOverJson", "equal-frequency in.csv --report x --json x", kGood, 2, "--report"},

    {"JsonOverStandardInput", "equal-frequency --json in.csv", kGood, 2,
     "--json 'in.csv': this is the input, which would be overwritten", "in.csv"},
    {"ReportOverStandardInput", "equal-frequency --report in.csv", kGood, 2, "is the input",
     "in.csv"},
    {"ExportOverStandardInput", "export --format python -o in.csv -", kHandMadeBins, 2,
     "--output 'in.csv': this is the bin file", "in.csv"},
    {"ReportOfBinsOverStandardInput", "report -o in.csv -", kHandMadeBins, 2, "is the bin file",
     "in.csv"},
    {"OutputAfterInput", "apply bins.json", kGood, 2, "standard output: this is", "in.csv",
     "in.csv"},

    {"ApplyBothFromPipe", "apply -", "", 2, "cannot both come from standard input"},
    {"StandardInputTwice", kRun + "- -", kGood, 2, "the input can come from standard input once"},
    {"ApplySuffixAndReplace", kApply + "--replace --suffix x", "", 2, "--suffix excludes"},
    {"ApplyUnknownForm", kApply + "--as number", "", 2, "--as"},
    {"EvaluateNoBinFile", "evaluate", "", 2, "BINS is required"},
    {"ReportOverBinFile", "report bins.json -o ./bins.json", "", 2, "overwritten"},

    {"ExportNoFormat", "export bins.json", "", 2,
     "--format is required: sql, pmml or python\nRun mcbin export --help for the options."},
    {"NoValue", "report bins.json -o", "", 2,
     "--output: a value is missing\nRun mcbin report --help"},
    {"TwoValues", "report -o a -o b bins.json", "", 2, "--output is given more than once"},
    {"TwoInputs", "apply bins.json a.csv b.csv", "", 2, "too many arguments: b.csv"},
    {"ExportNoTable", kExport + "sql", "", 2, "needs --table"},
    {"ExportUnknownDialect", kExport + "sql --dialect x", "", 2, "--dialect"},
    {"ExportDialectOfPmml", kExport + "pmml --dialect ansi", "", 2, "belong to"},
    {"ExportTextAmongIndexes", kExport + "python --missing-as ?", "", 2, "such as -1"},
    {"ExportTextAmongNumbers", kExport + "python --as woe --missing-as ?", "", 2, "such as 0"},
    {"ExportTextBeforeBinFile", "export no.json --format python --missing-as ?", "", 2,
     "such as -1"},
    {"ExportTableBeforeBinFile", "export no.json --format sql --table s.", "", 2, "--table 's.'"},
    {"ExportOverBinFile", kExport + "python -o ./bins.json", "", 2, "overwritten"},
};

INSTANTIATE_TEST_SUITE_P(Usage, RefusalTest, testing::ValuesIn(kOfUsage), RowName);

}  // namespace
