#pragma once

#include <functional>
#include <limits>
#include <memory>
#include <vector>

#include "common/mcquerycancel.h"
#include "common/progresslistener.h"
#include "common/progressreport.h"
#include "host/record.h"
#include "host/recorditerator.h"

// Hosts that keep count, answer as told, or throw when told.

class RecordingListener : public ProgressListener {
 public:
  void ReportProgress(ProgressReport& report) override {
    indices.push_back(report.DiscreteMeasure("IndexVar"));
    if (onReport) onReport();
  }

  std::vector<int> indices;  // of every report so far
  std::function<void()> onReport;
};

class CountingCancel : public MCQueryCancel {
 public:
  static constexpr int kNever = std::numeric_limits<int>::max();

  explicit CountingCancel(int yesAtPoll = kNever) : fYesAtPoll(yesAtPoll) {}

  bool QueryCancel() override {
    ++polls;
    if (onPoll) onPoll();
    return polls >= fYesAtPoll;
  }

  int polls = 0;
  std::function<void()> onPoll;

 private:
  int fYesAtPoll;
};

// Hands out rows one by one; an empty row is a null record.
class RowIterator : public MCCommon::RecordIterator {
 public:
  explicit RowIterator(std::vector<std::vector<double>> rows) : fRows(std::move(rows)) {}

  bool HasMore() override {
    ++calls;
    return fNext < fRows.size();
  }

  const MCCommon::Record* Next() override {
    if (onNext) onNext();
    const std::vector<double>& row = fRows[fNext++];
    if (row.empty()) return nullptr;
    fRecord = std::make_unique<MCCommon::Record>(row.size());
    for (std::size_t i = 0; i < row.size(); ++i) (*fRecord)[i] = row[i];
    return fRecord.get();
  }

  int calls = 0;  // of HasMore
  std::function<void()> onNext;

 private:
  std::vector<std::vector<double>> fRows;
  std::size_t fNext = 0;
  std::unique_ptr<MCCommon::Record> fRecord;
};
