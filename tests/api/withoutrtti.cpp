#include "api/withoutrtti.h"

#include "metadata/columnrecorditerator.h"

namespace {

const double kValues[] = {1, 0, 2, 0, 3, 1, 4, 1};

class Records : public MCCommon::RecordIterator {
 public:
  bool HasMore() override { return fNext < 4; }
  const MCCommon::Record* Next() override {
    for (std::size_t i = 0; i < 2; ++i) fRecord[i] = kValues[2 * fNext + i];
    ++fNext;
    return &fRecord;
  }

 private:
  std::size_t fNext = 0;
  MCCommon::Record fRecord{2};
};

class Columns : public MCBinning::ColumnRecordIterator {
 protected:
  MCBinning::RecordBlock NextBlock() override {
    const MCBinning::RecordBlock block{fIsTaken ? 0U : 4U, fColumns, 2};
    fIsTaken = true;
    return block;
  }

 private:
  bool fIsTaken = false;
  const MCBinning::BlockColumn fColumns[2] = {{kValues, 2, nullptr, 0},
                                              {kValues + 1, 2, nullptr, 0}};
};

}  // namespace

std::unique_ptr<MCCommon::RecordIterator> MakeRecordsWithoutRtti() {
  return std::make_unique<Records>();
}

std::unique_ptr<MCCommon::RecordIterator> MakeColumnsWithoutRtti() {
  return std::make_unique<Columns>();
}
