#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "../common/export.h"
#include "ibinencoder.h"
#include "ibinusermissing.h"

// Codes the values of a numeric categorical variable.
//
//   Codes     0, 1, 2, ... in order of first appearance. A code once given never changes;
//             there is no upper limit. 0.0 and -0.0 are one category.
//   Missing   a missing value is coded -1. A NaN is too: it equals no category, and it
//             never becomes one.
//   Cost      logarithmic in the number of categories to encode, constant to decode.
class MCBINNING_API BINCatNumEncoder : public IBINEncoder {
 public:
  // No categories yet. `capacity` says how many to expect; any value will do.
  explicit BINCatNumEncoder(int capacity);

  // Encodes every value in order, so the first distinct one gets code 0.
  explicit BINCatNumEncoder(const std::vector<double>& values);

  // Copies are deep, the user-missing definition included.
  BINCatNumEncoder(const BINCatNumEncoder& other);
  BINCatNumEncoder& operator=(const BINCatNumEncoder& other);
  ~BINCatNumEncoder() override;

  // The code of x, a new one if x was not seen before; -1 for a missing value or a NaN.
  // Leaves the encoder unchanged when memory runs out.
  double Encode(double x);

  // The code of x; -1 for a user-missing value, an unknown value or a NaN.
  double EncodeConst(double x) const;

  // The value of a code; the system-missing value for an unknown code.
  double Decode(int code) const;

  // MeasureNumericCategorical.
  int GetEncoderType() const override;

  int GetNumberOfCategories() const override;
  void SetValueLabels(const std::vector<std::string>& labels) override;
  void SetValueLabel(int code, const std::string& label) override;
  const std::vector<std::string>* GetValueLabels() const override;

  // Takes numeric definitions. A value declared missing after it was encoded keeps its
  // code, but is coded -1 from then on.
  bool SetUserMissingInfo(IBINUserMissing* userMissing) override;

  IBINUserMissing* GetUserMissingInfo() const override;

  IBINEncoder* Clone() const override;
  std::ostream& Display(std::ostream& os) const override;

 private:
  bool IsUserMissing(double x) const;

  std::map<double, int> fValueToCode;
  std::vector<double> fCodeToValue;
  std::vector<std::string> fValueLabels;
  int fLastCode;
  std::unique_ptr<IBINUserMissing> fUserMissing;
};
