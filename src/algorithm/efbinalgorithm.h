#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "../common/bincancelinfo.h"
#include "../common/export.h"
#include "../common/mcstatus.h"
#include "../metadata/binvarlist.h"
#include "../metadata/efbindatatuple.h"
#include "../output/efbinoutput.h"
#include "efbinsettings.h"
#include "iefbinalgorithm.h"

class BINDataPreparator;
class BINDataSet;
class BINEFPreProcess;

namespace MCBinning {
class RunFrame;
struct RunReport;
}  // namespace MCBinning

// Equal-frequency binning; BINEFPreProcess says how the cut points are found. Hosts get it
// from EFBINFactory.
class MCBINNING_API EFBINAlgorithm : public IEFBINAlgorithm {
 public:
  // Copies both.
  EFBINAlgorithm(EFBINSettings& settings, BINVarList& varList);
  EFBINAlgorithm(const EFBINAlgorithm&) = delete;
  EFBINAlgorithm& operator=(const EFBINAlgorithm&) = delete;
  ~EFBINAlgorithm() override;

  std::string GetComponentVersion() const override;
  MCBinning::MCStatus CreateBins(MCCommon::RecordIterator& records,
                                 const std::vector<int>* attributes) override;
  void SetCancelPtr(MCQueryCancel* query) override;
  void Cancel() override;
  void SetProgressListener(ProgressListener* listener) override;
  const EFBINOutput& GetBinningResults() const override;
  MCBinning::MCStatus GetStatus() override;
  const EFBINSettings& GetSettings() const override;
  void Display(std::ostream& os) const override;
  const BINVarList& GetVarList() const override;

 private:
  friend class MCBinning::RunFrame;

  bool CheckVariableIndices(const std::vector<int>* attributes,
                            std::vector<MCBinning::MCStatus>& statuses);
  MCBinning::MCStatus DoCreateBins(const std::vector<int>* attributes);
  MCBinning::MCStatus RunAlgorithm(unsigned int attribute);
  void DoCancel();

  unsigned long fNumCases;
  bool fRightBorderClosed;
  int fNumberOfBins;
  EFBINSettings fSettings;
  BINVarList fVarList;
  MCBinning::MCStatus fStatus;
  BINCancelInfo fCancel;
  std::unique_ptr<BINDataPreparator> fPreparator;
  std::unique_ptr<BINDataSet> fDataSet;
  std::unique_ptr<BINEFPreProcess> fPreProcess;
  std::vector<MCBinning::MCStatus> fAttributeStatuses;
  int fWeightIndex;
  [[maybe_unused]] std::vector<EFBINDataTuple>*
      fTuples;  // null: cases are read where the data set keeps them
  EFBINOutput fResults;
  std::unique_ptr<MCBinning::RunReport> fReport;
};
