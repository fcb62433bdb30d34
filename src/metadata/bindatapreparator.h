#pragma once

#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "../common/export.h"
#include "../common/mcstatus.h"
#include "../host/record.h"
#include "../host/recorditerator.h"
#include "bindatacache.h"
#include "ibinvariable.h"

class BINCancelInfo;
class BINRoundEncoder;
class BINVarList;
class IBINUserMissing;
class ProgressListener;

namespace MCBinning {
class BinaryRecordIterator;
class ColumnRecordIterator;
class RecordBuffer;
class RecordPreparer;
struct RunReport;
class TempFiles;
}  // namespace MCBinning

// Makes the one pass over the host's records: rounds the weight, turns user-missing values
// and values without category into the system-missing value, checks category codes, and
// writes one temporary file per variable.
//
//   Files      the target's first, then the weight's, then the attributes' in list order;
//              a "file position" counts them from 0. Removed with this object.
//   Codes      category codes are truncated towards zero and must lie in 0 .. 255. A file
//              with a code outside stops there, and its variable is not usable.
//   Records    one whose weight is missing, or zero or less once rounded, is dropped; so is a
//              null record. Nothing else drops a whole record.
//   Memory     10000 values per file, as they fill, until the pass is over.
//   Columns    of a ColumnRecordIterator are taken block by block, to the same effect.
//
// The variable list needs a role for each variable, at most one target and at most one
// weight: SetUpTempFiles() stops the process when there are more variables than files.
class MCBINNING_API BINDataPreparator {
 public:
  // Everything passed by reference or pointer stays the caller's and must outlive this
  // object. Throws std::bad_alloc. `progressInterval` counts records between two reports; 0 reports
  // none.
  BINDataPreparator(BINVarList& variables, BINCancelInfo& cancel, std::string tempDirName,
                    ProgressListener* listener, int progressInterval);
  BINDataPreparator(const BINDataPreparator&) = delete;
  BINDataPreparator& operator=(const BINDataPreparator&) = delete;
  ~BINDataPreparator();

  // Where to note what happens; stays the caller's, like everything above. To be called first.
  void ReportTo(MCBinning::RunReport& report);

  // The whole pass. Errors: 1 cancelled, 3 out of memory, 120003 the variable list names
  // another variable as target or weight than the one with that role (datum 1 = its index),
  // 120004 no record stored, 120012 the only categorical variable is a target with a bad
  // code, 120021 a file cannot be written or the directory's name holds a NUL. A failure of the
  // last transfer is not reported here; IsComplete() tells.
  MCBinning::MCStatus ProcessSource(MCCommon::RecordIterator& source);

  // Prepares one record: `in` by variable index, `out` by file position, with 0 in what is left
  // of it. Warning or error 120012 when a category code is out of range. A dropped record leaves
  // zeros in `out`. Requires a position for every variable, and one for every file.
  MCBinning::MCStatus ProcessRecord(const MCCommon::Record& in, MCCommon::Record& out);

  // Whether the variable at a file position can be a target. Error 120013, `valid`
  // unchanged, for a position out of range.
  MCBinning::MCStatus IsValidTarget(int file, bool& valid);

  // Sizes the cache and chooses a free file name for every variable; removes the files of an
  // earlier call. Errors: 3, 1 when cancelled while a name is sought, and 120021 when the
  // directory's name holds a NUL, which no file's can.
  MCBinning::MCStatus SetUpTempFiles();

  // Appends the cached values to the files and empties the cache. A name that was taken in
  // the meantime is left alone: the file takes the next free one. Errors: 120021, and 1.
  MCBinning::MCStatus TransferData();

  // OK unless a whole pass ended because no file name was found, because the list names another
  // target or weight than the one with that role, or cancelled after the last record. Other
  // errors are only returned.
  MCBinning::MCStatus GetStatus() const { return fStatus; }

  // The caller's own list.
  const BINVarList& GetVarList() const { return fVarList; }

  // By file position; empty before SetUpTempFiles().
  const std::vector<std::string>& GetFileNames() const { return fFileNames; }

  // The file position of every variable, -1 for one without a role.
  const std::vector<int>& GetVarIndices() const { return fVarToFile; }

  // The largest category code seen, by file position.
  const std::vector<int>& GetNumOfCategories() const { return fLargestCode; }

  // How many records were stored.
  unsigned long GetAllvarNumOfCases() const { return fStoredRecords; }

  // Whether the variable's values stop at a category code out of range. Requires a valid
  // file position.
  bool HasStopped(int file) const;

  // Whether any file could be made at all.
  bool HasAnyFile() const;

  // Whether the whole pass has written all it had to. If not, some file ends short, and only
  // another pass could mend that.
  bool IsComplete() const { return fIsComplete; }

  // Reads the file at the file position; null unless it is the one that was written and holds one
  // value per stored record. Requires a valid file position. Throws std::bad_alloc.
  std::unique_ptr<MCBinning::BinaryRecordIterator> OpenWhole(int file) const;

  // Whether the open file `descriptor` is the one at the file position and holds one value
  // per stored record; -1, with errno, is one that could not be opened. Requires a valid file
  // position.
  bool IsWhole(int file, int descriptor) const;

  // Writes a readable dump, in the stream's own formatting.
  std::ostream& Display(std::ostream& os) const;

 private:
  void MapVariable(int index);
  void CheckRoles() const;
  void NameFiles();
  void SizeBuffer();
  void ReadRecords(MCCommon::RecordIterator& source);
  void ReadBlocks(MCBinning::ColumnRecordIterator& source);
  void StorePrepared(std::size_t count);
  void RequireWhole(std::size_t valueCount);
  bool FinishLastTransfer();
  void MarkUndeclaredCategories();

  std::string fTempDirName;
  ProgressListener* fProgressListener;
  int fProgressInterval;
  std::vector<int> fVarToFile;
  std::vector<int> fAttributes;
  int fTargetPosition;
  int fWeightPosition;
  int fWeightPresent;
  std::vector<IBINVariable::MeasureLevel> fMeasureLevels;
  std::vector<IBINVariable::VariableRole> fRoles;
  std::vector<IBINUserMissing*> fUserMissing;
  BINVarList& fVarList;
  std::vector<int> fLargestCode;
  std::vector<bool> fUsable;
  MCBinning::MCStatus fStatus;
  [[maybe_unused]] double fLargestRecordCount;  // keeps the layout
  bool fSkipRecord;
  unsigned int fOrigRecSize;
  unsigned int fProcRecSize;
  unsigned int fNumAttributes;
  BINCancelInfo& fCancel;
  const BINRoundEncoder* fWeightEncoder;
  std::vector<std::string> fFileNames;
  BINDataCache fCache;
  int fCacheCapacity;
  unsigned long fStoredRecords;
  int fHasWeight;
  int fHasTarget;

  std::unique_ptr<MCBinning::RecordBuffer> fBuffer;      // over the cache
  std::unique_ptr<MCBinning::RecordPreparer> fPreparer;  // fills the buffer
  std::unique_ptr<MCBinning::TempFiles> fFiles;          // null before SetUpTempFiles()
  bool fIsComplete;
  std::unique_ptr<MCBinning::RunReport> fOwnReport;  // until the caller has one
  MCBinning::RunReport* fReport;
};
