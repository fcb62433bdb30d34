#include "metadata/bincatnumencoder.h"

#include <cmath>

#include "common/missing.h"
#include "metadata/binnumericusermissing.h"
#include "metadata/categoryencoding.h"
#include "metadata/ibinvariable.h"
#include "metadata/usermissingownership.h"

namespace {

// Seven values to a line, and an end of line after the last.
template <typename Value>
void DisplayBySevens(std::ostream& os, const std::vector<Value>& values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    os << values[i] << ' ';
    if (i % 7 == 6) os << '\n';
  }
  os << '\n';
}

}  // namespace

BINCatNumEncoder::BINCatNumEncoder(int capacity) : fLastCode(-1) {
  fCodeToValue.reserve(MCBinning::CodesToReserve(capacity));
}

BINCatNumEncoder::BINCatNumEncoder(const std::vector<double>& values) : fLastCode(-1) {
  for (const double value : values) Encode(value);
}

BINCatNumEncoder::BINCatNumEncoder(const BINCatNumEncoder& other)
    : IBINEncoder(other),
      fValueToCode(other.fValueToCode),
      fCodeToValue(other.fCodeToValue),
      fValueLabels(other.fValueLabels),
      fLastCode(other.fLastCode),
      fUserMissing(MCBinning::CloneUserMissing(other.fUserMissing.get())) {}

BINCatNumEncoder& BINCatNumEncoder::operator=(const BINCatNumEncoder& other) {
  if (this == &other) return *this;
  BINCatNumEncoder copy(other);
  fValueToCode.swap(copy.fValueToCode);
  fCodeToValue.swap(copy.fCodeToValue);
  fValueLabels.swap(copy.fValueLabels);
  fLastCode = copy.fLastCode;
  fUserMissing.swap(copy.fUserMissing);
  return *this;
}

BINCatNumEncoder::~BINCatNumEncoder() = default;

// A NaN must stay out of the map: it is neither below nor above any key, so it would be
// taken for whichever key the search meets first.
double BINCatNumEncoder::Encode(double x) {
  if (MCMV::IsMissing(x) || std::isnan(x) || IsUserMissing(x)) return MCBinning::kNoCategoryCode;
  const auto place = fValueToCode.lower_bound(x);
  if (place != fValueToCode.end() && place->first == x) return place->second;

  fCodeToValue.push_back(x);
  try {
    fValueToCode.emplace_hint(place, x, fLastCode + 1);
  } catch (...) {
    fCodeToValue.pop_back();
    throw;
  }
  return ++fLastCode;
}

double BINCatNumEncoder::EncodeConst(double x) const {
  if (std::isnan(x) || IsUserMissing(x)) return MCBinning::kNoCategoryCode;
  const auto found = fValueToCode.find(x);
  return found != fValueToCode.end() ? found->second : MCBinning::kNoCategoryCode;
}

double BINCatNumEncoder::Decode(int code) const {
  if (code < 0 || code >= GetNumberOfCategories()) return MCMV::Missing();
  return fCodeToValue[static_cast<std::size_t>(code)];
}

int BINCatNumEncoder::GetEncoderType() const { return IBINVariable::MeasureNumericCategorical; }

int BINCatNumEncoder::GetNumberOfCategories() const {
  return static_cast<int>(fValueToCode.size());
}

void BINCatNumEncoder::SetValueLabels(const std::vector<std::string>& labels) {
  fValueLabels = labels;
}

void BINCatNumEncoder::SetValueLabel(int code, const std::string& label) {
  MCBinning::SetLabelOfCode(fValueLabels, fValueToCode.size(), code, label);
}

const std::vector<std::string>* BINCatNumEncoder::GetValueLabels() const { return &fValueLabels; }

bool BINCatNumEncoder::SetUserMissingInfo(IBINUserMissing* userMissing) {
  return MCBinning::TakeUserMissing(fUserMissing, userMissing, IBINUserMissing::UserMissingNumeric);
}

IBINUserMissing* BINCatNumEncoder::GetUserMissingInfo() const { return fUserMissing.get(); }

IBINEncoder* BINCatNumEncoder::Clone() const { return new BINCatNumEncoder(*this); }

std::ostream& BINCatNumEncoder::Display(std::ostream& os) const {
  os << "\tBINCatNumEncoder: Last code = " << fLastCode << '\n';
  os << "\t\tNumeric values of categories: ";
  DisplayBySevens(os, fCodeToValue);
  if (!fValueLabels.empty()) {
    os << "\t\tValue Labels:\n";
    DisplayBySevens(os, fValueLabels);
  }
  MCBinning::DisplayEncoderUserMissing(os, fUserMissing.get());
  return os << '\n';
}

bool BINCatNumEncoder::IsUserMissing(double x) const {
  const auto* const numeric = dynamic_cast<const BINNumericUserMissing*>(fUserMissing.get());
  return numeric != nullptr && numeric->Contains(x);
}
