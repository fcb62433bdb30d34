#include "librarycalls.h"

#include <numeric>
#include <stdexcept>
#include <utility>

#include "algorithm/binefpreprocess.h"
#include "algorithm/binfactory.h"
#include "algorithm/binsettings.h"
#include "algorithm/efbinfactory.h"
#include "algorithm/efbinsettings.h"
#include "algorithm/ibinalgorithm.h"
#include "algorithm/iefbinalgorithm.h"
#include "common/mcstatus.h"
#include "output/binoutput.h"
#include "output/efbinoutput.h"
#include "support/tempdir.h"

namespace bench {

namespace {

void Require(const MCBinning::MCStatus& status, const char* call) {
  if (!status.IsError()) return;
  throw std::runtime_error(std::string(call) + " fails with " +
                           std::to_string(status.GetErrorCode()));
}

template <typename Result, typename Output>
CutPoints CollectCutPoints(const Output& output) {
  std::vector<Result> results;
  Require(output.GetAllCutPoints(results), "GetAllCutPoints");
  CutPoints cutPoints;
  for (const Result& result : results) {
    Require(result.GetStatus(), "binning an attribute");
    cutPoints.push_back(result.GetCutPoints());
  }
  return cutPoints;
}

std::unique_ptr<MCCommon::RecordIterator> MakeRecords(const Columns& columns,
                                                      const RunOptions& options) {
  if (options.isByColumn) return std::make_unique<BlockIterator>(columns);
  return std::make_unique<ColumnIterator>(columns);
}

}  // namespace

BINVarList DescribeColumns(const Columns& columns) {
  BINVarList variables;
  variables.AddCatVar("class", "", columns.classCount, IBINVariable::MeasureNumericCategorical,
                      IBINVariable::RoleTarget);
  for (std::size_t i = 0; i < columns.attributes.size(); ++i) {
    variables.AddContVar("x" + std::to_string(i), "", IBINVariable::RoleAttribute);
  }
  if (!columns.weights.empty()) {
    variables.AddWeightVar("weight", "", IBINVariable::RoundClosest);
  }
  return variables;
}

CutPoints RunSupervised(MCCommon::RecordIterator& records, BINVarList variables,
                        const std::string& directory, const RunOptions& options) {
  BINSettings settings;
  settings.SetTempDirName(directory);
  settings.SetNumberOfBins(options.binCount);
  settings.SetNumDistinctValueThreshold(options.distinctThreshold);
  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> algorithm(factory.CreateBINAlgorithm(settings, variables));
  Require(factory.GetStatus(), "CreateBINAlgorithm");
  Require(algorithm->CreateBins(records, nullptr, nullptr), "CreateBins");
  return CollectCutPoints<BINAttributeTargetResults>(algorithm->GetBinningResults());
}

CutPoints RunSupervised(const Columns& columns, const std::string& directory,
                        const RunOptions& options) {
  return RunSupervised(*MakeRecords(columns, options), DescribeColumns(columns), directory,
                       options);
}

CutPoints RunEqualFrequency(const Columns& columns, const std::string& directory,
                            const RunOptions& options) {
  EFBINSettings settings;
  settings.SetTempDirName(directory);
  settings.SetNumberOfBins(options.binCount);
  BINVarList variables = DescribeColumns(columns);
  EFBINFactory factory;
  const std::unique_ptr<IEFBINAlgorithm> algorithm(
      factory.CreateEFBINAlgorithm(settings, variables));
  Require(factory.GetStatus(), "CreateEFBINAlgorithm");
  std::vector<int> attributes(columns.attributes.size());
  std::iota(attributes.begin(), attributes.end(), 1);
  Require(algorithm->CreateBins(*MakeRecords(columns, options), &attributes), "CreateBins");
  return CollectCutPoints<BINAttributeResults>(algorithm->GetBinningResults());
}

DataPass::DataPass(const Columns& columns, const std::string& directory)
    : fVariables(DescribeColumns(columns)),
      fCancel(nullptr),
      fRecords(columns),
      fPreparator(fVariables, fCancel, directory, nullptr, 0),
      fDataSet(fRecords, fPreparator),
      fFirstFile(columns.weights.empty() ? 1 : 2) {}

void DataPass::Run() { Require(fDataSet.HandleDataFile(), "HandleDataFile"); }

void DataPass::ReadAttribute(int attribute) {
  const int file = fFirstFile + attribute;
  Require(fDataSet.ReadNextAttribute(static_cast<unsigned int>(file)), "ReadNextAttribute");
}

std::vector<BINDataTuple>& DataPass::LoadAttribute(int attribute) {
  std::vector<BINDataTuple>* tuples = nullptr;
  Require(fDataSet.GetAttribute(static_cast<unsigned int>(attribute) + 1, 0, tuples),
          "GetAttribute");
  return *tuples;
}

void DataPass::CreateBinTable(const std::vector<double>& boundaries, std::vector<double>& table) {
  Require(fDataSet.CreateBinTable(&boundaries, true, table), "CreateBinTable");
}

// The operations work on the classes of the last run, so there is one over a few cases.
Splitter::Splitter(int classCount) {
  const TempDir directory;
  Column codes(static_cast<std::size_t>(classCount));
  std::iota(codes.begin(), codes.end(), 0.0);
  const Columns columns = OneColumn(codes, codes, classCount);
  BINSettings settings;
  settings.SetTempDirName(directory.Path());
  settings.SetNumberOfBins(2);
  BINVarList variables = DescribeColumns(columns);
  fAlgorithm = std::make_unique<BINAlgorithm>(settings, variables);
  ColumnIterator records(columns);
  Require(fAlgorithm->CreateBins(records, nullptr, nullptr), "CreateBins");
}

int Splitter::FindBest(const std::vector<double>& table, std::vector<double>& left,
                       std::vector<double>& right) const {
  const int rowCount = static_cast<int>(table.size() / (left.size() - 1));
  return fAlgorithm->FindBestCutPoint(&table, 0, rowCount - 1, &left, &right);
}

std::set<double> Splitter::FindCutPoints(const std::vector<double>& boundaries,
                                         const std::vector<double>& table) const {
  std::set<double> cutPoints;
  const int rowCount = static_cast<int>(boundaries.size());
  Require(fAlgorithm->MDLPCut(&boundaries, &table, 0, rowCount - 1, cutPoints), "MDLPCut");
  return cutPoints;
}

std::vector<double> CutEqualFrequency(std::vector<BINDataTuple>& sorted, int binCount) {
  BINEFPreProcess preProcess(binCount, true);
  std::vector<double> cutPoints;
  std::vector<double> unusedWeights;
  if (!preProcess.EFCreatePercentileCutPts(&sorted, cutPoints, unusedWeights,
                                           static_cast<double>(sorted.size()))) {
    throw std::runtime_error("EFCreatePercentileCutPts fails");
  }
  return cutPoints;
}

}  // namespace bench
