#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "algorithm/binalgorithm.h"
#include "columniterator.h"
#include "columns.h"
#include "common/bincancelinfo.h"
#include "metadata/bindatapreparator.h"
#include "metadata/bindataset.h"
#include "metadata/bindatatuple.h"
#include "metadata/binvarlist.h"
#include "metadata/pass/tuplesort.h"

// All that the benchmarks call of the library, whole runs and single steps. A call that fails
// throws std::runtime_error, so nothing is measured that was not done.
namespace bench {

// The target at index 0, attribute i at index i + 1, then the weight if there is one.
BINVarList DescribeColumns(const Columns& columns);

struct RunOptions {
  int distinctThreshold = -1;  // as BINSettings: no pre-bins
  int binCount = 1000;
  bool isByColumn = false;  // records are handed in by column
};

using CutPoints = std::vector<std::vector<double>>;  // by attribute

// Whole runs, from the making of the algorithm object to its end.
CutPoints RunSupervised(MCCommon::RecordIterator& records, BINVarList variables,
                        const std::string& directory, const RunOptions& options);
CutPoints RunSupervised(const Columns& columns, const std::string& directory,
                        const RunOptions& options);
CutPoints RunEqualFrequency(const Columns& columns, const std::string& directory,
                            const RunOptions& options);

// The data pass over columns, and what can be asked after it.
class DataPass {
 public:
  DataPass(const Columns& columns, const std::string& directory);

  // To be called once, before anything else.
  void Run();

  // Reads an attribute from the temporary files with its target, unsorted.
  void ReadAttribute(int attribute);

  // Reads and sorts it; the tuples stay this object's.
  std::vector<BINDataTuple>& LoadAttribute(int attribute);

  // Of the attribute loaded last, with the right border closed.
  void CreateBinTable(const std::vector<double>& boundaries, std::vector<double>& table);

 private:
  BINVarList fVariables;
  BINCancelInfo fCancel;
  ColumnIterator fRecords;
  BINDataPreparator fPreparator;
  BINDataSet fDataSet;
  int fFirstFile;  // of the attributes
};

// Sorts tuples as the attribute load does, with a buffer that is kept between calls.
class Sorter {
 public:
  void Sort(std::vector<BINDataTuple>& tuples) { fSorter.Sort(tuples); }

 private:
  MCBinning::TupleSorter<BINDataTuple> fSorter;
};

// Split search over bin tables, whatever it prepares included; right border closed.
class Splitter {
 public:
  // Serves tables with that many classes.
  explicit Splitter(int classCount);

  // The best split of all rows. `left` and `right` as with BINAlgorithm::FindBestCutPoint.
  int FindBest(const std::vector<double>& table, std::vector<double>& left,
               std::vector<double>& right) const;

  // All cut points that the method accepts; `boundaries` holds the upper one of every row.
  std::set<double> FindCutPoints(const std::vector<double>& boundaries,
                                 const std::vector<double>& table) const;

 private:
  std::unique_ptr<BINAlgorithm> fAlgorithm;
};

// Equal-frequency cut points of sorted tuples of weight 1.
std::vector<double> CutEqualFrequency(std::vector<BINDataTuple>& sorted, int binCount);

}  // namespace bench
