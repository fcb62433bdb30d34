#include "metadata/binnumericusermissing.h"

#include <algorithm>

#include "common/displayframe.h"
#include "metadata/labelledvalues.h"

BINNumericUserMissing::BINNumericUserMissing() : fHasInterval(false) {}

int BINNumericUserMissing::GetDataType() const { return UserMissingNumeric; }

int BINNumericUserMissing::GetNDiscreteValues() const {
  return static_cast<int>(fDiscreteValues.size());
}

bool BINNumericUserMissing::HasInterval() const { return fHasInterval; }

void BINNumericUserMissing::AddValue(double value, const std::string& label) {
  MCBinning::AppendLabelled(fDiscreteValues, fValueLabels, value, label);
}

void BINNumericUserMissing::SetInterval(const BINNumericInterval& interval) {
  fInterval = interval;
  fHasInterval = true;
}

const BINNumericInterval* BINNumericUserMissing::GetInterval() const {
  return fHasInterval ? &fInterval : nullptr;
}

bool BINNumericUserMissing::Contains(double x) const {
  return std::find(fDiscreteValues.begin(), fDiscreteValues.end(), x) != fDiscreteValues.end() ||
         (fHasInterval && fInterval.Contains(x));
}

IBINUserMissing* BINNumericUserMissing::Clone() const { return new BINNumericUserMissing(*this); }

bool BINNumericUserMissing::IsEqualTo(const IBINUserMissing* other) const {
  if (other == nullptr || other->GetDataType() != UserMissingNumeric) return false;
  const auto* const numeric = dynamic_cast<const BINNumericUserMissing*>(other);
  return numeric != nullptr && fDiscreteValues == numeric->fDiscreteValues &&
         fHasInterval == numeric->fHasInterval &&
         (!fHasInterval || fInterval == numeric->fInterval);
}

std::ostream& BINNumericUserMissing::Display(std::ostream& os) const {
  MCBinning::DisplayStart(os, "BINNumericUserMissing");
  MCBinning::DisplayLabelled(os, fDiscreteValues, fValueLabels);
  if (fHasInterval) {
    os << "Missing interval:\n";
    fInterval.Display(os);
  }
  return MCBinning::DisplayEnd(os, "BINNumericUserMissing");
}
