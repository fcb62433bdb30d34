#pragma once

#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "../common/export.h"
#include "../common/mcstatus.h"
#include "../host/recorditerator.h"
#include "binaryrecorditerator.h"
#include "bindatatuple.h"
#include "efbindatatuple.h"

class BINDataPreparator;

namespace MCBinning {
class CaseReader;
class CaseStore;
class LoadedCases;
}  // namespace MCBinning

// Serves one attribute at a time: its valid cases sorted by value, their totals, and bin
// tables over them.
//
//   Valid cases   weight and value present, and for supervised binning the target too. They
//                 ascend by value; equal values (-0.0 and 0.0 among them) keep record order,
//                 NaN values of either sign come last.
//   Order of use  construct, SetThresholdDistinct(), HandleDataFile(), then for each attribute
//                 GetAttribute() and whatever reads its cases.
//   Memory        one tuple and one sort buffer entry per stored record, reused for every
//                 attribute.
class MCBINNING_API BINDataSet {
 public:
  // Both stay the caller's and must outlive this object. Throws std::bad_alloc.
  BINDataSet(MCCommon::RecordIterator& records, BINDataPreparator& preparator);
  BINDataSet(const BINDataSet&) = delete;
  BINDataSet& operator=(const BINDataSet&) = delete;
  ~BINDataSet();

  // Runs the pass over the records; to be called once, before any other operation. An error
  // of the pass is returned unchanged, a warning too; error 3 when memory runs out.
  MCBinning::MCStatus HandleDataFile();

  // Loads an attribute against a target, both by variable index. `tuples` stays this
  // object's, holds exactly the valid cases, and is valid until the next attribute is
  // loaded; null when the status is an error or a warning. Errors: 120010 the list has no
  // target-role variable or the target cannot be one, 120011 no such attribute, 120012 the
  // attribute's values stop at a category code out of range (datum 0 = its file position),
  // 120021 a temporary file does not hold a value per record, 3 out of memory.
  MCBinning::MCStatus GetAttribute(unsigned int attribute, unsigned int target,
                                   std::vector<BINDataTuple>*& tuples);

  // The same without a target: a target's missing values make no case invalid, and the
  // target-role variable may be loaded like any other.
  MCBinning::MCStatus GetAttribute(unsigned int attribute, std::vector<EFBINDataTuple>*& tuples);

  // Reads the variable at a file position into the tuples, unsorted: the supervised ones with
  // a target-role variable, the equal-frequency ones without.
  MCBinning::MCStatus ReadNextAttribute(unsigned int file);

  // The weights of the loaded cases by bin and target category: entry [b * K + k] sums the
  // cases of category k between cut point b and cut point b + 1, each bin including its
  // upper cut point when `rightBorderClosed`, else its lower one. The first cut point is not
  // compared: everything up to the second one is bin 0. Warning 120002 when there are no cut
  // points, when a value lies beyond the last or is a NaN, or when no value reaches the last
  // bin; the table is then not to be used.
  MCBinning::MCStatus CreateBinTable(const std::vector<double>* cutPoints, bool rightBorderClosed,
                                     std::vector<double>& table);

  // Whether a variable can be a target. Error 120010 for a negative index, 120013 beyond the
  // list.
  MCBinning::MCStatus IsValidTarget(int target, bool& valid);

  // More distinct values than this make NeedPreprocess() true; 0 changes nothing.
  void SetThresholdDistinct(unsigned int threshold);

  // False, and nothing changed, for 0.
  bool SetNumberOfCases(unsigned long count);

  // Of the target of the attribute loaded last: its largest code seen plus one.
  unsigned int GetNumOfTargetCategories() const { return fNumTargetCategories; }

  // Of the valid cases of the attribute loaded last.
  unsigned int GetNumberOfCases() const { return fNumCases; }
  unsigned int GetNumDistinctValues() const { return fNumDistinctValues; }
  double GetTotalweight() const { return fTotalWeight; }

  // Of the attribute loaded last, its valid cases and those whose target or value is missing.
  double GetTotalWeightWithMissing() const { return fTotalWeightWithMissing; }

  // Of the attribute loaded last; the system-missing value without a valid case.
  double GetMinimum() const { return fMinimum; }
  double GetMaximum() const { return fMaximum; }

  // Whether the attribute loaded last has more distinct values than the threshold.
  bool NeedPreprocess() const { return fNeedPreprocess; }

  // Writes a readable dump, in the stream's own formatting.
  std::ostream& Display(std::ostream& os) const;

 private:
  friend class MCBinning::LoadedCases;

  using FileIterator = std::unique_ptr<MCBinning::BinaryRecordIterator>;

  int GetFile(unsigned int variable) const;
  void CheckAttribute(unsigned int attribute) const;
  void Load(unsigned int attribute, unsigned int target);
  void Load(unsigned int attribute);
  std::vector<EFBINDataTuple>& GetEFTuples();
  bool HasTable() const;
  bool FillBinTable(const std::vector<double>& cutPoints, bool rightBorderClosed,
                    std::vector<double>& table) const;
  bool FillDistinctBinTable(bool rightBorderClosed);

  // The valid cases of one file, against a target's or without one, in record order.
  // False, and no cases, when their kind cannot hold them.
  template <typename Case, typename Cases>
  bool ReadCases(int file, Cases& cases);
  template <typename Case>
  bool LoadSorted(int file, std::vector<Case>& cases);
  template <typename Case>
  void SortCases(std::vector<Case>& cases);
  template <typename Case>
  bool LoadPacked(int file);

  unsigned int fNumTargetCategories;
  bool fHasWeight;
  bool fHasTarget;
  std::unique_ptr<std::vector<BINDataTuple>> fTuples;
  std::unique_ptr<std::vector<EFBINDataTuple>> fEFTuples;
  FileIterator fTargetIterator;
  FileIterator fWeightIterator;
  MCCommon::RecordIterator& fRecords;
  BINDataPreparator& fPreparator;
  bool fIsThresholdSet;
  std::vector<std::string> fFileNames;
  const std::vector<int>* fVarToFile;
  unsigned int fNumCases;
  unsigned int fNumDistinctValues;
  unsigned long fNumAllCases;
  double fTotalWeight;
  double fTotalWeightWithMissing;
  unsigned int fThresholdDistinct;
  bool fNeedPreprocess;
  unsigned int fTargetFile;
  int fWeightFile;
  double fMinimum;
  double fMaximum;

  unsigned int fLargestTarget;  // the largest target code among the loaded cases
  std::unique_ptr<MCBinning::CaseReader> fReader;
  std::unique_ptr<MCBinning::CaseStore> fCases;
};
