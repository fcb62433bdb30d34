#include "metadata/binstringencoder.h"

#include "metadata/binstringusermissing.h"
#include "metadata/categoryencoding.h"
#include "metadata/ibinvariable.h"
#include "metadata/usermissingownership.h"

BINStringEncoder::BINStringEncoder(int capacity) : fLastCode(-1) {
  fCodeLinks.reserve(MCBinning::CodesToReserve(capacity));
}

BINStringEncoder::BINStringEncoder(const std::vector<std::string>& values) : fLastCode(-1) {
  for (const std::string& value : values) Encode(value);
}

BINStringEncoder::BINStringEncoder(const BINStringEncoder& other)
    : IBINEncoder(other),
      fValueToCode(other.fValueToCode),
      fValueLabels(other.fValueLabels),
      fLastCode(other.fLastCode),
      fUserMissing(MCBinning::CloneUserMissing(other.fUserMissing.get())) {
  CreateLinks();
}

BINStringEncoder& BINStringEncoder::operator=(const BINStringEncoder& other) {
  if (this == &other) return *this;
  BINStringEncoder copy(other);
  // Swapped maps keep their keys where they are, so the links go with them.
  fValueToCode.swap(copy.fValueToCode);
  fCodeLinks.swap(copy.fCodeLinks);
  fValueLabels.swap(copy.fValueLabels);
  fLastCode = copy.fLastCode;
  fUserMissing.swap(copy.fUserMissing);
  return *this;
}

BINStringEncoder::~BINStringEncoder() = default;

double BINStringEncoder::Encode(const std::string& s) {
  if (IsUserMissing(s)) return MCBinning::kNoCategoryCode;
  const auto place = fValueToCode.lower_bound(s);
  if (place != fValueToCode.end() && place->first == s) return place->second;

  fCodeLinks.push_back(nullptr);
  try {
    fCodeLinks.back() = &fValueToCode.emplace_hint(place, s, fLastCode + 1)->first;
  } catch (...) {
    fCodeLinks.pop_back();
    throw;
  }
  return ++fLastCode;
}

double BINStringEncoder::EncodeConst(const std::string& s) const {
  if (IsUserMissing(s)) return MCBinning::kNoCategoryCode;
  const auto found = fValueToCode.find(s);
  return found != fValueToCode.end() ? found->second : MCBinning::kNoCategoryCode;
}

std::string BINStringEncoder::Decode(int code) const {
  if (code < 0 || code > fLastCode) return {};
  return *fCodeLinks[static_cast<std::size_t>(code)];
}

void BINStringEncoder::CreateLinks() {
  fCodeLinks.assign(fValueToCode.size(), nullptr);
  for (const auto& [value, code] : fValueToCode) {
    fCodeLinks[static_cast<std::size_t>(code)] = &value;
  }
}

int BINStringEncoder::GetEncoderType() const { return IBINVariable::MeasureStringCategorical; }

int BINStringEncoder::GetNumberOfCategories() const { return fLastCode + 1; }

void BINStringEncoder::SetValueLabels(const std::vector<std::string>& labels) {
  fValueLabels = labels;
}

void BINStringEncoder::SetValueLabel(int code, const std::string& label) {
  MCBinning::SetLabelOfCode(fValueLabels, fValueToCode.size(), code, label);
}

const std::vector<std::string>* BINStringEncoder::GetValueLabels() const { return &fValueLabels; }

bool BINStringEncoder::SetUserMissingInfo(IBINUserMissing* userMissing) {
  return MCBinning::TakeUserMissing(fUserMissing, userMissing, IBINUserMissing::UserMissingString);
}

IBINUserMissing* BINStringEncoder::GetUserMissingInfo() const { return fUserMissing.get(); }

IBINEncoder* BINStringEncoder::Clone() const { return new BINStringEncoder(*this); }

std::ostream& BINStringEncoder::Display(std::ostream& os) const {
  os << "\tBINStringEncoder object:  Last code = " << fLastCode << '\n';
  for (std::size_t code = 0; code < fCodeLinks.size(); ++code) {
    os << "\t\t" << code << "\t\t" << *fCodeLinks[code] << '\n';
  }
  MCBinning::DisplayEncoderUserMissing(os, fUserMissing.get());
  return os;
}

bool BINStringEncoder::IsUserMissing(const std::string& s) const {
  const auto* const strings = dynamic_cast<const BINStringUserMissing*>(fUserMissing.get());
  return strings != nullptr && strings->Contains(s);
}
