#pragma once

#include <string>
#include <vector>

#include "../common/export.h"
#include "ibinencoder.h"
#include "ibinvariable.h"

class BINNumericUserMissing;

// Makes every frequency weight a positive whole number. Keeps no categories and no labels.
//
// The user-missing definition is the weight variable's: the encoder only points at it, and
// so does every copy of the encoder.
class MCBINNING_API BINRoundEncoder : public IBINEncoder {
 public:
  // Rounds as `option` says, or to the closest whole number.
  BINRoundEncoder();
  explicit BINRoundEncoder(IBINVariable::BINWRoundingOption option);
  BINRoundEncoder(const BINRoundEncoder&) = default;
  BINRoundEncoder& operator=(const BINRoundEncoder&) = default;

  // To which whole number.
  IBINVariable::BINWRoundingOption GetOption() const { return fOption; }

  // The rounded weight, or the system-missing value for a weight that is missing, or zero
  // or negative once rounded. The user-missing definition is asked about the raw weight. A
  // NaN comes back as it is.
  double Encode(double x) const;

  // MeasureFrequencyWeight.
  int GetEncoderType() const override;

  // Always 0.
  int GetNumberOfCategories() const override;

  // Does nothing.
  void SetValueLabels(const std::vector<std::string>& labels) override;
  void SetValueLabel(int code, const std::string& label) override;

  // Always null.
  const std::vector<std::string>* GetValueLabels() const override;

  // Takes numeric definitions. Never owns: the object must outlive its use here.
  bool SetUserMissingInfo(IBINUserMissing* userMissing) override;

  IBINUserMissing* GetUserMissingInfo() const override;

  IBINEncoder* Clone() const override;
  std::ostream& Display(std::ostream& os) const override;

 private:
  IBINVariable::BINWRoundingOption fOption;
  IBINUserMissing* fUserMissing;

  // fUserMissing as what it is, or null: found once, not once per record.
  const BINNumericUserMissing* fNumericUserMissing;
};
