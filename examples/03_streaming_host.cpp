// Data larger than memory: a record iterator of the host's own reads a file block by block.
//
// The program first writes its file, 201 doubles a record: 200 attributes and a target. A run needs
// memory for one attribute (up to 64 bytes a record) and small buffers for the others, far less
// than the file has:
//
//   g++ -std=c++17 03_streaming_host.cpp $(pkg-config --cflags --libs mcbinning) -o streaming_host
//   (ulimit -v 150000; ./streaming_host 1000000)    # 1.6 GB of data in 150 MB of memory
//
// The file, and as much again for temporary files, goes to $TMPDIR or else /tmp.

#include <mcbinning/mcbinning.h>
#include <sys/resource.h>

#include <cmath>
#include <cstddef>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "workdirectory.h"

namespace {

constexpr int kAttributes = 200;
constexpr int kTarget = kAttributes;
constexpr std::size_t kRecordSize = kAttributes + 1;
constexpr std::size_t kRecordBytes = kRecordSize * sizeof(double);

// begin iterator
// Records from a file of doubles, kRecordSize to a record. One block is in memory at a time.
class FileRecordIterator : public MCCommon::RecordIterator {
 public:
  explicit FileRecordIterator(const std::string& path)
      : fFile(path, std::ios::binary), fBlock(100 * kRecordSize), fRecord(kRecordSize) {
    if (!fFile) throw std::runtime_error("cannot open " + path);
  }

  // Starts again at the first record: an algorithm reads its records once, this is for the next.
  void Rewind() {
    fFile.clear();
    fFile.seekg(0);
    fNext = fEnd = 0;
  }

  bool HasMore() override {
    if (fNext == fEnd) ReadBlock();
    return fNext < fEnd;
  }

  // Always the same object: the library copies the values before it asks for more.
  const MCCommon::Record* Next() override {
    for (std::size_t i = 0; i < kRecordSize; ++i) fRecord[i] = fBlock[fNext++];
    return &fRecord;
  }

 private:
  // An exception ends the run with error 1.
  void ReadBlock() {
    fFile.read(reinterpret_cast<char*>(fBlock.data()),
               static_cast<std::streamsize>(fBlock.size() * sizeof(double)));
    const auto bytesRead = static_cast<std::size_t>(fFile.gcount());
    if (fFile.bad() || bytesRead % kRecordBytes != 0) throw std::runtime_error("damaged file");
    fNext = 0;
    fEnd = bytesRead / sizeof(double);
  }

  std::ifstream fFile;
  std::vector<double> fBlock;
  MCCommon::Record fRecord;
  std::size_t fNext = 0;  // where in the block the next record begins
  std::size_t fEnd = 0;   // where the last one ends
};
// end iterator

// Noise from 0 to 2^24. The distance between the two classes halves from attribute to attribute.
void WriteData(const std::string& path, long recordCount) {
  std::ofstream file(path, std::ios::binary);
  std::mt19937_64 random(1);
  std::vector<double> record(kRecordSize);
  for (long i = 0; i < recordCount && file; ++i) {
    const double target = i % 2 == 0 ? 0.0 : 1.0;
    double distance = std::ldexp(1.0, 24);
    for (double& value : record) {
      value = static_cast<double>(random() >> 40) + target * distance;
      distance /= 2.0;
    }
    record.back() = target;
    file.write(reinterpret_cast<const char*>(record.data()), kRecordBytes);
  }
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path);
}

BINVarList Variables() {
  BINVarList variables;
  for (int i = 0; i < kAttributes; ++i) {
    variables.AddContVar("x" + std::to_string(i), "", IBINVariable::RoleAttribute);
  }
  variables.AddCatVar("class", "", std::vector<std::string>{"no", "yes"}, IBINVariable::RoleTarget);
  // With such a list a run would end the program.
  if (variables.FindRoleConflict() >= 0) throw std::logic_error("a variable has a wrong role");
  return variables;
}

// begin status
[[noreturn]] void Throw(const MCBinning::MCStatus& status) {
  throw std::runtime_error("no bins: status " + std::to_string(status.GetErrorCode()));
}

void ThrowOnError(const MCBinning::MCStatus& status) {
  if (status.IsError()) Throw(status);
}
// end status

void PrintCutPoints(const std::vector<double>& cutPoints) {
  for (const double cutPoint : cutPoints) std::cout << ' ' << cutPoint;
  std::cout << '\n';
}

void BinSupervised(FileRecordIterator& records, const std::string& tempDirectory) {
  BINSettings settings;
  settings.SetNumberOfBins(1000);
  settings.SetNumDistinctValueThreshold(1000);
  settings.SetTempDirName(tempDirectory);
  BINVarList variables = Variables();
  BINFactory factory;
  const std::unique_ptr<IBINAlgorithm> binning(factory.CreateBINAlgorithm(settings, variables));
  ThrowOnError(binning ? binning->CreateBins(records, nullptr, nullptr) : factory.GetStatus());

  for (int attribute = 0; attribute < kAttributes; ++attribute) {
    // begin result
    BINAttributeTargetResults results;
    const MCBinning::MCStatus status =
        binning->GetBinningResults().GetAttributeTargetCutPoints(attribute, kTarget, results);
    if (status.IsError() || results.GetCellCounts().front().empty()) Throw(status);
    // end result
    if (results.GetCutPoints().empty()) continue;
    std::cout << 'x' << attribute << " tells the classes apart, cut at";
    PrintCutPoints(results.GetCutPoints());
  }
}

void BinEqualFrequency(FileRecordIterator& records, const std::string& tempDirectory) {
  EFBINSettings settings;
  settings.SetNumberOfBins(4);
  settings.SetTempDirName(tempDirectory);
  BINVarList variables = Variables();
  EFBINFactory factory;
  const std::unique_ptr<IEFBINAlgorithm> binning(factory.CreateEFBINAlgorithm(settings, variables));
  const std::vector<int> attributes{0};
  ThrowOnError(binning ? binning->CreateBins(records, &attributes) : factory.GetStatus());

  BINAttributeResults results;
  const MCBinning::MCStatus status = binning->GetBinningResults().GetAttributeCutPoints(0, results);
  if (status.IsError() || results.GetCellCounts().empty()) Throw(status);
  std::cout << "quarters of x0, cut at";
  PrintCutPoints(results.GetCutPoints());
}

void Run(long recordCount) {
  const WorkDirectory directory;
  const std::string path = directory.Path() + "/records";
  WriteData(path, recordCount);

  FileRecordIterator records(path);
  BinSupervised(records, directory.Path());
  records.Rewind();
  BinEqualFrequency(records, directory.Path());

  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  std::cout << "file: " << std::filesystem::file_size(path) / 1000000
            << " MB, peak memory: " << usage.ru_maxrss / 1000 << " MB\n";
}

}  // namespace

int main(int argc, char** argv) {
  try {
    Run(argc > 1 ? std::stol(argv[1]) : 2000);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
