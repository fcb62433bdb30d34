#include "csv/inputscan.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <thread>

#include "binmodel/model/refusal.h"
#include "csv/blockscan.h"
#include "csv/recordscan.h"
#include "csv/sidework.h"
#include "io/interrupt.h"

namespace MCBin {

namespace {

// Beyond that one thread, which reads the file and stores the values, is what all others wait for.
constexpr std::size_t kMostThreads = 8;

std::size_t CountThreads(int jobs) {
  const std::size_t asked =
      jobs > 0 ? static_cast<std::size_t>(jobs) : std::thread::hardware_concurrency();
  return std::clamp<std::size_t>(asked, 1, kMostThreads);
}

// Lays out the value file: one column for each request, and one more where texts count, too.
void MakeValueFile(const std::vector<ColumnRequest>& requests, const std::string& directory,
                   InputScan& scan) {
  std::size_t columnCount = requests.size();
  for (std::size_t i = 0; i < requests.size(); ++i) {
    scan.textColumns.push_back(requests[i].MayBeCategorical() ? columnCount++ : i);
  }
  scan.values = std::make_unique<ValueFile>(directory, columnCount);
}

// Of the file that has been come to.
ScanPlan MakePlan(InputFiles& files, const std::vector<ColumnRequest>& requests,
                  const MissingTexts& missingTexts, const WeightCheck* weights,
                  const InputScan& scan) {
  const RecordParser& parser = files.GetReader().GetParser();
  ScanPlan plan{parser.GetSyntax(),
                parser.GetNumbers(),
                parser.HasPlainDecimals(),
                missingTexts,
                requests,
                weights,
                scan.textColumns,
                scan.values->GetColumnCount(),
                files.GetLinesBefore(),
                std::vector<std::size_t>(parser.GetFieldCount(), ScanPlan::kNotRead)};
  for (std::size_t i = 0; i < requests.size(); ++i) plan.requestAt[requests[i].position] = i;
  return plan;
}

// Reads the records of a file in blocks, which are parsed side by side and taken in one after the
// other, in the order of the file. What is odd about a block, and every refusal, is left to the
// records one by one: so it is the same wherever blocks end, and however many are parsed at a time.
class BlockPass {
 public:
  BlockPass(CsvReader& reader, const ScanPlan& plan, WeightCheck* weights, std::size_t threadCount,
            InputScan& scan)
      : fReader(reader),
        fWeights(weights),
        fScan(scan),
        fRecords(plan, weights, scan),
        fWork(threadCount - 1, CountPieces(threadCount), [this](std::size_t piece) {
          Piece& mine = At(piece);
          mine.isScanned = mine.scan.Scan(mine.block);
        }) {
    while (fPieces.size() < CountPieces(threadCount)) fPieces.emplace_back(plan);
  }

  void Run(const ReadProgress& progress) {
    for (;;) {
      Interrupt::ThrowIfRequested();
      progress(fReader.GetBytesRead());
      const bool hasRoom = fHandedIn - fTakenIn < fPieces.size();
      if (hasRoom && fReader.TakeBlock(At(fHandedIn).block)) {
        At(fHandedIn++).scan.SetKnown(fScan.columns);
        fWork.HandIn();
      } else if (fTakenIn < fHandedIn) {
        fWork.WaitFor(fTakenIn);
        TakeIn(At(fTakenIn++));
      } else if (fReader.Next()) {
        fRecords.Add(fReader.GetRecord());
      } else {
        return;
      }
    }
  }

 private:
  struct Piece {
    explicit Piece(const ScanPlan& plan) : scan(plan) {}

    CsvBlock block;
    BlockScan scan;
    bool isScanned = false;
  };

  static std::size_t CountPieces(std::size_t threadCount) {
    return threadCount == 1 ? 1 : threadCount + 2;
  }

  Piece& At(std::size_t piece) { return fPieces[piece % fPieces.size()]; }

  void TakeIn(Piece& piece) {
    if (!piece.isScanned || !CanTake(piece.scan)) {
      RecordParser parser = fReader.MakeParser(piece.block);
      while (parser.Next() == RecordParser::Outcome::kRecord) fRecords.Add(parser.GetRecord());
      return;
    }
    for (std::size_t i = 0; i < fScan.columns.size(); ++i) TakeColumn(i, piece.scan);
    for (const double weight : piece.scan.GetWeights()) fWeights->Add(weight);
    fScan.values->AddRecords(piece.scan.GetValues(), piece.scan.GetStride(),
                             piece.scan.GetValueCount());
    fScan.recordCount += piece.scan.GetRecordCount();
  }

  bool CanTake(const BlockScan& block) const {
    for (std::size_t i = 0; i < fScan.columns.size(); ++i) {
      if (!fScan.columns[i].CanTake(block.GetColumn(i))) return false;
    }
    return true;
  }

  void TakeColumn(std::size_t i, BlockScan& block) {
    const ColumnScan::Codes codes = fScan.columns[i].Take(block.GetColumn(i));
    block.Recode(i, codes.numbers);
    block.Recode(fScan.textColumns[i], codes.texts);
    if (!fScan.columns[i].IsNumeric()) fScan.values->Abandon(i);
  }

  CsvReader& fReader;
  WeightCheck* const fWeights;
  InputScan& fScan;
  RecordScan fRecords;
  std::deque<Piece> fPieces;  // used in turn
  std::size_t fHandedIn = 0;
  std::size_t fTakenIn = 0;
  SideWork fWork;  // ends before the pieces do
};

}  // namespace

InputScan ScanInput(InputFiles& files, const std::vector<ColumnRequest>& requests,
                    IBINVariable::BINWRoundingOption rounding, const MissingTexts& missingTexts,
                    const ScanControl& control) {
  InputScan scan;
  scan.columns = std::vector<ColumnScan>(requests.begin(), requests.end());
  MakeValueFile(requests, control.directory, scan);
  const auto weight = std::find_if(requests.begin(), requests.end(), [](const ColumnRequest& r) {
    return r.use == ColumnUse::kWeight;
  });
  MCBinModel::WeightInfo weightInfo;
  std::optional<WeightCheck> weights;
  if (weight != requests.end()) {
    weightInfo = {weight->name, rounding, weight->missing.ForEitherKind()};
    weights.emplace(weightInfo, weight->position, missingTexts);
  }

  WeightCheck* const weightCheck = weights ? &*weights : nullptr;
  do {
    const ScanPlan plan = MakePlan(files, requests, missingTexts, weightCheck, scan);
    BlockPass(files.GetReader(), plan, weightCheck, CountThreads(control.jobs), scan)
        .Run([&](std::uint64_t) { control.progress(files.GetBytesRead()); });
  } while (files.OpenNext());
  if (scan.recordCount == 0) {
    throw MCBinModel::Refusal(MCBinModel::RefusalCode::kNoRecords, {files.GetName(), {}, {}},
                              "there is a header but no record");
  }
  if (weights) {
    scan.weightNote = weights->DescribeRounding();
    scan.dropped = weights->GetCoder().GetDropped();
    weights->GetCoder().CheckRecordsLeft(scan.recordCount, files.GetName());
  }
  scan.values->Finish();
  return scan;
}

}  // namespace MCBin
