#pragma once

#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "../common/bincancelinfo.h"
#include "../common/export.h"
#include "../common/mcstatus.h"
#include "../metadata/bindatatuple.h"
#include "../metadata/binvarlist.h"
#include "../output/binoutput.h"
#include "binsettings.h"
#include "ibinalgorithm.h"

class BINDataPreparator;
class BINDataSet;
class BINEFPreProcess;

namespace MCBinning {
class RunFrame;
struct RunReport;
}  // namespace MCBinning

// Supervised binning: recursive partitioning by class entropy, stopped by the minimum
// description length principle (Fayyad and Irani, "Multi-interval discretization of
// continuous-valued attributes for classification learning", IJCAI 1993), with the
// differences that docs/method.md lists. Hosts get it from BINFactory.
//
// The partitioning operations below work on the attribute/target pair that was run last and
// change nothing. They take weights as a "category weight vector": the total weight, then
// the weight of each target category. Bins are such vectors one after the other.
class MCBINNING_API BINAlgorithm : public IBINAlgorithm {
 public:
  // Copies both.
  BINAlgorithm(BINSettings& settings, BINVarList& varList);
  BINAlgorithm(const BINAlgorithm&) = delete;
  BINAlgorithm& operator=(const BINAlgorithm&) = delete;
  ~BINAlgorithm() override;

  std::string GetComponentVersion() const override;
  MCBinning::MCStatus CreateBins(MCCommon::RecordIterator& records,
                                 const std::vector<int>* attributes,
                                 const std::vector<int>* targets) override;
  void SetCancelPtr(MCQueryCancel* query) override;
  void Cancel() override;
  void SetProgressListener(ProgressListener* listener) override;
  const BINOutput& GetBinningResults() const override;
  MCBinning::MCStatus GetStatus() override;
  const BINSettings& GetSettings() const override;
  void Display(std::ostream& os) const override;
  const BINVarList& GetVarList() const override;

  // Partitions the sorted cases, `tuples`, that the pair run last has. Candidates are the ascending
  // `cutPoints`, or every distinct value. `cuts` and `counts` are expected empty and receive the
  // accepted cut points and the bins; `modelEntropy` the entropy of the partition, in bits.
  // `cutPoints` is changed: the value that cannot separate anything is removed. Warnings: 120017 no
  // cut accepted, one bin; 120002 the values do not fit the candidates (a NaN, an infinity), no
  // bin. Error 120002 before the first run.
  MCBinning::MCStatus MDLP(const std::vector<BINDataTuple>* tuples, std::vector<double>& cutPoints,
                           std::set<double>& cuts, std::vector<double>& counts,
                           double& modelEntropy) const;
  MCBinning::MCStatus MDLP(const std::vector<BINDataTuple>* tuples, std::set<double>& cuts,
                           std::vector<double>& counts, double& modelEntropy) const;

  // Splits rows first..last (both included) of the bin table recursively; boundary r belongs
  // to row r. Error 120002 when the two do not go together. Requires 0 <= first and last below
  // the number of rows; that is not checked, nor below.
  MCBinning::MCStatus MDLPCut(const std::vector<double>* boundaries,
                              const std::vector<double>* binTable, int first, int last,
                              std::set<double>& cuts) const;

  // The row of the best split of rows first..last: the last row of its left side with the
  // right border closed, else the first of its right side; 0 when no row can be one. `left`
  // holds zeros and `right` the weights of all rows; they receive those of the two sides. Looks at
  // these rows alone. May throw std::bad_alloc.
  int FindBestCutPoint(const std::vector<double>* binTable, int first, int last,
                       std::vector<double>* left, std::vector<double>* right) const;

  // The class entropy of a category weight vector, in bits; 0 when the total is 0.
  double Entropy(const std::vector<double>* weights) const;

  // The mean entropy of two sides, by weight.
  double ComputeEntropy(const std::vector<double>* left, const std::vector<double>* right) const;

  // What a split costs to describe beyond its position, in bits.
  double ComputeDelta(const std::vector<double>* left, const std::vector<double>* right,
                      double parentEntropy) const;

  // The entropy of bins over the total weight of the pair's valid cases, in bits.
  void ComputeModelEntropy(const std::vector<double>& counts, double& modelEntropy) const;

  // Merges every bin between two others that weighs less than the settings' share of the
  // lighter one into the neighbour that keeps the class entropy lower. May throw std::bad_alloc.
  void ProcessLittleBins(std::vector<double>* counts, std::set<double>& cuts) const;

 private:
  friend class MCBinning::RunFrame;

  bool CheckVariableIndices(const std::vector<int>* attributes, const std::vector<int>* targets,
                            std::vector<MCBinning::MCStatus>& statuses);
  MCBinning::MCStatus DoCreateBins(const std::vector<int>* attributes,
                                   const std::vector<int>* targets);
  MCBinning::MCStatus RunAlgorithm(unsigned int attribute, unsigned int target);
  void DoCancel();

  unsigned long fNumCases;
  unsigned int fNumTargetCategories;
  bool fRightBorderClosed;
  int fNumberOfBins;
  BINSettings fSettings;
  BINVarList fVarList;
  MCBinning::MCStatus fStatus;
  BINCancelInfo fCancel;
  std::unique_ptr<BINDataPreparator> fPreparator;
  std::unique_ptr<BINDataSet> fDataSet;
  std::unique_ptr<BINEFPreProcess> fPreProcess;
  std::vector<MCBinning::MCStatus> fPairStatuses;
  int fTargetIndex;
  int fWeightIndex;
  // Keeps the layout; null, as cases are read where the data set keeps them.
  [[maybe_unused]] std::vector<BINDataTuple>* fTuples;
  BINOutput fResults;
  std::unique_ptr<MCBinning::RunReport> fReport;
};
