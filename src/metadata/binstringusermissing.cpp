#include "metadata/binstringusermissing.h"

#include <algorithm>

#include "common/displayframe.h"
#include "metadata/labelledvalues.h"

int BINStringUserMissing::GetDataType() const { return UserMissingString; }

int BINStringUserMissing::GetNDiscreteValues() const {
  return static_cast<int>(fDiscreteValues.size());
}

bool BINStringUserMissing::HasInterval() const { return false; }

void BINStringUserMissing::AddValue(const std::string& value, const std::string& label) {
  MCBinning::AppendLabelled(fDiscreteValues, fValueLabels, value, label);
}

bool BINStringUserMissing::Contains(const std::string& s) const {
  return std::find(fDiscreteValues.begin(), fDiscreteValues.end(), s) != fDiscreteValues.end();
}

IBINUserMissing* BINStringUserMissing::Clone() const { return new BINStringUserMissing(*this); }

bool BINStringUserMissing::IsEqualTo(const IBINUserMissing* other) const {
  if (other == nullptr || other->GetDataType() != UserMissingString) return false;
  const auto* const strings = dynamic_cast<const BINStringUserMissing*>(other);
  return strings != nullptr && fDiscreteValues == strings->fDiscreteValues;
}

std::ostream& BINStringUserMissing::Display(std::ostream& os) const {
  MCBinning::DisplayStart(os, "BINStringUserMissing");
  MCBinning::DisplayLabelled(os, fDiscreteValues, fValueLabels);
  return MCBinning::DisplayEnd(os, "BINStringUserMissing");
}
