#include "metadata/binroundencoder.h"

#include <cmath>

#include "common/missing.h"
#include "metadata/binnumericusermissing.h"
#include "metadata/categoryencoding.h"
#include "metadata/usermissingownership.h"

BINRoundEncoder::BINRoundEncoder() : BINRoundEncoder(IBINVariable::RoundClosest) {}

BINRoundEncoder::BINRoundEncoder(IBINVariable::BINWRoundingOption option)
    : fOption(option), fUserMissing(nullptr), fNumericUserMissing(nullptr) {}

double BINRoundEncoder::Encode(double x) const {
  if (MCMV::IsMissing(x)) return MCMV::Missing();
  if (fNumericUserMissing != nullptr && fNumericUserMissing->Contains(x)) return MCMV::Missing();

  double rounded = x;
  if (fOption == IBINVariable::RoundTruncate) rounded = std::floor(x);
  if (fOption == IBINVariable::RoundClosest) rounded = std::floor(x + 0.5);
  return rounded <= 0.0 ? MCMV::Missing() : rounded;
}

int BINRoundEncoder::GetEncoderType() const { return IBINVariable::MeasureFrequencyWeight; }

int BINRoundEncoder::GetNumberOfCategories() const { return 0; }

void BINRoundEncoder::SetValueLabels(const std::vector<std::string>& /*labels*/) {}

void BINRoundEncoder::SetValueLabel(int /*code*/, const std::string& /*label*/) {}

const std::vector<std::string>* BINRoundEncoder::GetValueLabels() const { return nullptr; }

bool BINRoundEncoder::SetUserMissingInfo(IBINUserMissing* userMissing) {
  if (!MCBinning::IsNullOrOfType(userMissing, IBINUserMissing::UserMissingNumeric)) return false;
  fUserMissing = userMissing;
  fNumericUserMissing = dynamic_cast<const BINNumericUserMissing*>(userMissing);
  return true;
}

IBINUserMissing* BINRoundEncoder::GetUserMissingInfo() const { return fUserMissing; }

IBINEncoder* BINRoundEncoder::Clone() const { return new BINRoundEncoder(*this); }

std::ostream& BINRoundEncoder::Display(std::ostream& os) const {
  os << "\tBINRoundEncoder: option = ";
  MCBinning::Display(os, fOption);
  MCBinning::DisplayEncoderUserMissing(os, fUserMissing);
  return os << '\n';
}
