// Any consistent variable list, any settings, any records, through the public interface: every
// run ends with a known status and leaves no file.

#include <fuzzer/FuzzedDataProvider.h>
#include <stdlib.h>

#include <cfloat>
#include <cmath>
#include <filesystem>
#include <limits>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "algorithm/binfactory.h"
#include "algorithm/binsettings.h"
#include "algorithm/efbinfactory.h"
#include "algorithm/efbinsettings.h"
#include "algorithm/ibinalgorithm.h"
#include "algorithm/iefbinalgorithm.h"
#include "common/mcquerycancel.h"
#include "common/missing.h"
#include "common/progresslistener.h"
#include "common/progressreport.h"
#include "fuzz/require.h"
#include "metadata/binvarlist.h"
#include "output/binoutput.h"
#include "output/efbinoutput.h"

namespace {

using MCBinning::MCStatus;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// What the host hands in, drawn from the input.
class Source {
 public:
  Source(const std::uint8_t* data, std::size_t size) : fData(data, size) {}

  bool Bool() { return fData.ConsumeBool(); }
  int Int(int least, int most) { return fData.ConsumeIntegralInRange(least, most); }
  bool IsEmpty() { return fData.remaining_bytes() == 0; }

  // Small whole numbers most often, so that there are ties and valid codes.
  double Number() {
    const int kind = Int(0, 15);
    if (kind < 8) return Int(-1, 12);
    if (kind < 11) return Int(-1000, 1000) / 8.0;
    if (kind == 11) return fData.ConsumeFloatingPoint<double>();
    return fData.PickValueInArray({std::nan(""), -std::nan(""), kInfinity, -kInfinity, DBL_MAX,
                                   -DBL_MAX, DBL_MIN, 5e-324, -0.0, 255.0, 256.0, -1.5, 0x1p53,
                                   1e300, MCMV::Missing()});
  }

  std::vector<int> Indices() {
    std::vector<int> indices(static_cast<std::size_t>(Int(0, 5)));
    for (int& index : indices) index = Int(-1, 7);
    return indices;
  }

 private:
  FuzzedDataProvider fData;
};

// Hands out records; once the input is used up, the last one again and again. Now and then it
// throws or cancels.
class Host : public MCCommon::RecordIterator, public ProgressListener, public MCQueryCancel {
 public:
  Host(Source& source, std::size_t width)
      : fSource(source), fRecord(width), fLeft(source.Int(0, 400)) {
    constexpr int kNever = 1 << 20;
    fCallToThrow = source.Int(0, 7) == 0 ? source.Int(0, 500) : kNever;
    fCallToCancel = source.Int(0, 7) == 0 ? source.Int(0, 500) : kNever;
  }

  bool HasMore() override {
    Call();
    return fLeft > 0;
  }

  const MCCommon::Record* Next() override {
    Call();
    --fLeft;
    if (fSource.IsEmpty()) return &fRecord;
    if (fSource.Int(0, 20) == 0) return nullptr;
    for (std::size_t i = 0; i < fRecord.Size(); ++i) fRecord[i] = fSource.Number();
    return &fRecord;
  }

  void ReportProgress(ProgressReport& report) override {
    Call();
    report.ScaleMeasure("elapsedTime");
  }

  bool QueryCancel() override {
    Call();
    return fCalls >= fCallToCancel;
  }

 private:
  void Call() {
    if (++fCalls == fCallToThrow) throw std::runtime_error("host");
  }

  Source& fSource;
  MCCommon::Record fRecord;
  int fLeft;
  int fCalls = 0;
  int fCallToThrow = 0;
  int fCallToCancel = 0;
};

BINVarList MakeList(Source& source) {
  BINVarList list;
  bool hasTarget = false;
  for (int i = source.Int(1, 6); i > 0; --i) {
    const std::string name = "v" + std::to_string(i);
    const bool isTarget = !hasTarget && source.Bool();
    const auto role = isTarget ? IBINVariable::RoleTarget : IBINVariable::RoleAttribute;
    const auto level = source.Bool() ? IBINVariable::MeasureNumericCategorical
                                     : IBINVariable::MeasureStringCategorical;
    int index = -1;
    switch (source.Int(0, 4)) {
      case 0:
        index = list.AddCatVar(name, "", source.Int(-1, 256), level, role);
        break;
      case 1:
        index =
            list.AddCatVar(name, "", std::vector<double>{source.Number(), source.Number()}, role);
        break;
      case 2:
        index = list.AddWeightVar(name, "",
                                  static_cast<IBINVariable::BINWRoundingOption>(source.Int(0, 2)));
        break;
      default:
        index = list.AddContVar(name, "", role);
    }
    hasTarget = hasTarget || list.GetVariableRole(index) == IBINVariable::RoleTarget;
    if (source.Bool()) list.AddDiscreteUserMissing(index, source.Number(), "");
    if (source.Bool()) list.SetMissingInterval(index, source.Number(), source.Number());
  }
  return list;
}

template <typename Settings>
void FillSettings(Settings& settings, Source& source, Host& host, const std::string& directory) {
  settings.SetNumberOfBins(source.Int(-1, 40));
  settings.SetRightBorderClosed(source.Bool());
  settings.SetTempDirName(directory);
  settings.SetProgressListener(source.Bool() ? &host : nullptr);
  settings.SetCancelPointer(source.Bool() ? &host : nullptr);
  settings.SetNSkippedCasesReports(source.Int(-1, 3));
  settings.SetNSkippedAttReports(source.Int(-1, 3));
}

void RequireKnown(const MCStatus& status) {
  const long code = status.GetErrorCode();
  Require(code == 0 || code == 1 || (code >= 120002 && code <= 120021 && code != 120007),
          "the status is one of the table");
  Require((code == 0) == status.IsOK(), "a status has a severity");
}

void CheckResult(const BINAttributeTargetResults& result) {
  double sum = 0.0;
  for (const std::vector<double>& counts : result.GetCellCounts()) {
    if (!counts.empty()) sum += counts.front();
  }
  const long code = result.GetStatus().GetErrorCode();
  const double total = result.GetTotalWeight();
  const bool isExact = total == std::floor(total) && total < 0x1p53;
  if ((code == 0 || code == 120017) && isExact) Require(sum == total, "bins hold every case");
}

void CheckResult(const BINAttributeResults&) {}

template <typename Algorithm, typename Results>
void Check(Algorithm& algorithm, const MCStatus& status, Results& results) {
  RequireKnown(status);
  algorithm.GetBinningResults().GetAllCutPoints(results);
  for (const auto& result : results) {
    RequireKnown(result.GetStatus());
    CheckResult(result);
  }
  RequireKnown(algorithm.GetStatus());
  std::ostringstream text;
  algorithm.Display(text);
}

void RunSupervised(Source& source, Host& host, BINVarList& list, const std::string& directory) {
  BINSettings settings;
  FillSettings(settings, source, host, directory);
  settings.SetNumDistinctValueThreshold(source.Int(-1, 30));
  settings.SetSmallBinDetectionThreshold(source.Number());
  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, list));
  RequireKnown(factory.GetStatus());
  if (!algorithm) return;
  const std::vector<int> attributes = source.Indices();
  const std::vector<int> targets = source.Indices();
  std::vector<BINAttributeTargetResults> results;
  for (int run = source.Int(1, 3); run > 0; --run) {
    const MCStatus status = algorithm->CreateBins(host, source.Bool() ? &attributes : nullptr,
                                                  source.Bool() ? &targets : nullptr);
    Check(*algorithm, status, results);
  }
}

void RunEqualFrequency(Source& source, Host& host, BINVarList& list, const std::string& directory) {
  EFBINSettings settings;
  FillSettings(settings, source, host, directory);
  EFBINFactory factory;
  const std::unique_ptr<IEFBINAlgorithm> algorithm(factory.CreateEFBINAlgorithm(settings, list));
  RequireKnown(factory.GetStatus());
  if (!algorithm) return;
  const std::vector<int> attributes = source.Indices();
  std::vector<BINAttributeResults> results;
  for (int run = source.Int(1, 3); run > 0; --run) {
    const MCStatus status = algorithm->CreateBins(host, source.Bool() ? &attributes : nullptr);
    Check(*algorithm, status, results);
  }
}

// Where the temporary files go; removed when the program ends.
class Directory {
 public:
  Directory() {
    if (!std::filesystem::is_directory("/dev/shm")) fPath = "/tmp/mcbinning-fuzz-XXXXXX";
    Require(mkdtemp(fPath.data()) != nullptr, "a directory for temporary files can be made");
  }
  ~Directory() { std::filesystem::remove_all(fPath); }

  const std::string& Path() const { return fPath; }

 private:
  std::string fPath = "/dev/shm/mcbinning-fuzz-XXXXXX";
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Directory directory;
  Source source(data, size);
  MCMV::gMissingValue = source.Int(0, 3) == 0 ? source.Number() : -DBL_MAX;
  BINVarList list = MakeList(source);
  Host host(source, static_cast<std::size_t>(list.Size()));
  if (source.Bool()) {
    RunSupervised(source, host, list, directory.Path());
  } else {
    RunEqualFrequency(source, host, list, directory.Path());
  }
  Require(std::filesystem::is_empty(directory.Path()), "no file is left");
  return 0;
}
