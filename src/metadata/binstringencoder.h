#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "../common/export.h"
#include "ibinencoder.h"
#include "ibinusermissing.h"

// Codes the values of a string categorical variable.
//
//   Codes     0, 1, 2, ... in order of first appearance. A code once given never changes;
//             there is no upper limit. Strings match byte by byte; the empty string is a
//             category like any other.
//   Missing   a user-missing string is coded -1.
//   Cost      logarithmic in the number of categories to encode, constant to decode.
class MCBINNING_API BINStringEncoder : public IBINEncoder {
 public:
  // No categories yet. `capacity` says how many to expect; any value will do.
  explicit BINStringEncoder(int capacity);

  // Encodes every value in order, so the first distinct one gets code 0.
  explicit BINStringEncoder(const std::vector<std::string>& values);

  // Copies are deep, the user-missing definition included.
  BINStringEncoder(const BINStringEncoder& other);
  BINStringEncoder& operator=(const BINStringEncoder& other);
  ~BINStringEncoder() override;

  // The code of s, a new one if s was not seen before; -1 for a user-missing string.
  // Leaves the encoder unchanged when memory runs out.
  double Encode(const std::string& s);

  // The code of s; -1 for a user-missing or unknown string.
  double EncodeConst(const std::string& s) const;

  // The string of a code; the empty string for an unknown code.
  std::string Decode(int code) const;

  // Rebuilds the way from code to string. The encoder does so itself whenever it is copied.
  void CreateLinks();

  // MeasureStringCategorical.
  int GetEncoderType() const override;

  int GetNumberOfCategories() const override;
  void SetValueLabels(const std::vector<std::string>& labels) override;
  void SetValueLabel(int code, const std::string& label) override;
  const std::vector<std::string>* GetValueLabels() const override;

  // Takes string definitions. A string declared missing after it was encoded keeps its
  // code, but is coded -1 from then on.
  bool SetUserMissingInfo(IBINUserMissing* userMissing) override;

  IBINUserMissing* GetUserMissingInfo() const override;

  IBINEncoder* Clone() const override;

  // Does not show the labels.
  std::ostream& Display(std::ostream& os) const override;

 private:
  bool IsUserMissing(const std::string& s) const;

  std::map<std::string, int> fValueToCode;
  std::vector<const std::string*> fCodeLinks;  // to the keys of fValueToCode
  std::vector<std::string> fValueLabels;
  int fLastCode;
  std::unique_ptr<IBINUserMissing> fUserMissing;
};
