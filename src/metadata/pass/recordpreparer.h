#pragma once

#include <cstddef>
#include <vector>

#include "common/mcstatus.h"
#include "host/record.h"
#include "metadata/columnrecorditerator.h"
#include "metadata/pass/recordbuffer.h"

class BINNumericUserMissing;
class BINRoundEncoder;
class BINVarList;
class IBINVariable;

namespace MCBinning {

struct RunReport;

// Some records of a block, by column.
struct BlockPart {
  const BlockColumn* columns;
  std::size_t first;
  std::size_t count;
};

// Makes of a record the values that go to the files: the weight rounded, the system-missing value
// in place of user-missing ones and of no category, category codes checked.
class RecordPreparer {
 public:
  // Brings the largest code of each file up to date and marks a file with a code out of range as
  // not usable; the buffer is to close it then. All stay the caller's.
  RecordPreparer(const BINVarList& variables, std::vector<int>& largestCodes,
                 std::vector<bool>& usable, RecordBuffer& buffer);

  // Where to note dropped weights and refused codes; stays the caller's. To be called before the
  // first record.
  void ReportTo(RunReport& report) { fReport = &report; }

  // What is at a position of the record, and the file it goes to. The target's is file 0.
  void SetTarget(std::size_t variable);
  void SetWeight(std::size_t variable, std::size_t file, const BINRoundEncoder* encoder);
  void AddAttribute(std::size_t variable, std::size_t file, const IBINVariable& description);

  // False when the record is to be dropped. Warning 120012 for a category code out of range in
  // `warning`, which is left alone otherwise; the same as StatusError when nothing but the target
  // is categorical.
  bool Prepare(const MCCommon::Record& in, const RecordSlots& out, MCStatus& warning);

  // The same of several records, which go to the slots one after the other: their weights and
  // targets first. Answers how many there are, the dropped ones left out. Requires that
  // CountUnremarkable() answers no fewer, or a single record: so whatever happens, happens in the
  // order of the records.
  std::size_t PrepareWeightsAndTargets(const BlockPart& in, const RecordSlots& out);

  // Then the attributes of those records, all of them or the one of a file. The latter answers
  // where its values are: at `slots`, or where the host has them.
  void PrepareAttributes(const BlockPart& in, const RecordSlots& out);
  const double* PrepareAttribute(const BlockPart& in, std::size_t file, double* slots);

  // The file of the first attribute, which those of the others follow; without attributes a file
  // that is not there.
  std::size_t GetFirstAttributeFile() const {
    return fAttributes.empty() ? fUsable.size() : fAttributes.front().file;
  }

  // How many records there are before the first that has a code that is to be refused or noted in
  // the report.
  std::size_t CountUnremarkable(const BlockPart& in) const;

  // Whether the values of the file stop at a code out of range.
  bool HasStopped(std::size_t file) const { return fHasStopped[file]; }

 private:
  struct Place {
    std::size_t variable;
    std::size_t file;
  };

  struct Attribute {
    std::size_t variable;
    std::size_t file;
    bool isContinuous;
    const BINNumericUserMissing* missing;  // null where there is none that fits
  };

  void FetchNext(const RecordSlots& out) const;
  bool PrepareWeight(double rawWeight, double& slot);
  bool PrepareTarget(double value, double& slot);
  bool PrepareAttribute(const Attribute& attribute, double value, double& slot);
  std::size_t PrepareWeights(const BlockPart& in, const RecordSlots& out);
  bool IsDropped(const BlockPart& in, std::size_t index) const;
  void Gather(const BlockPart& in, std::size_t variable, double* slots) const;
  const double* FindWhole(const BlockPart& in, std::size_t variable) const;
  bool StayAsTheyAre(const Attribute& attribute, const double* values) const;
  std::size_t CountUnremarkable(const BlockPart& in, const Place& place, bool isTarget) const;
  bool AreKnownCodes(const double* values, std::size_t count, std::size_t file) const;
  bool StoreCategory(double value, int code, const Place& place, double& slot);
  void NoteDropped(double rawWeight);
  void NoteRefused(double code, std::size_t variable);
  bool IsNoted(std::size_t variable) const;
  void RefuseTarget(MCStatus& warning) const;

  const BINVarList& fVariables;
  std::vector<int>& fLargestCodes;
  std::vector<bool>& fUsable;
  RecordBuffer& fBuffer;
  std::vector<bool> fHasStopped;
  RunReport* fReport = nullptr;

  bool fHasTarget = false;
  std::size_t fTargetVariable = 0;
  const BINRoundEncoder* fWeightEncoder = nullptr;
  std::size_t fWeightVariable = 0;
  std::size_t fWeightFile = 0;
  std::vector<Attribute> fAttributes;  // in file order
  // Of the last part, how many records are kept, and which ones if any was dropped.
  std::size_t fKeptCount = 0;
  std::vector<std::size_t> fKept;
};

}  // namespace MCBinning
