#include "metadata/pass/recordpreparer.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "common/guard.h"
#include "common/missing.h"
#include "common/runreport.h"
#include "common/statuscodes.h"
#include "metadata/binnumericusermissing.h"
#include "metadata/binroundencoder.h"
#include "metadata/binvarlist.h"
#include "metadata/pass/categorycode.h"

namespace MCBinning {

RecordPreparer::RecordPreparer(const BINVarList& variables, std::vector<int>& largestCodes,
                               std::vector<bool>& usable, RecordBuffer& buffer)
    : fVariables(variables),
      fLargestCodes(largestCodes),
      fUsable(usable),
      fBuffer(buffer),
      fHasStopped(usable.size(), false) {}

void RecordPreparer::SetTarget(std::size_t variable) {
  fHasTarget = true;
  fTargetVariable = variable;
}

void RecordPreparer::SetWeight(std::size_t variable, std::size_t file,
                               const BINRoundEncoder* encoder) {
  fWeightVariable = variable;
  fWeightFile = file;
  fWeightEncoder = encoder;
}

void RecordPreparer::AddAttribute(std::size_t variable, std::size_t file,
                                  const IBINVariable& description) {
  const IBINUserMissing* const missing = description.GetUserMissingInfo();
  const bool isNumeric =
      missing != nullptr && missing->GetDataType() == IBINUserMissing::UserMissingNumeric;
  fAttributes.push_back(
      {variable, file, description.GetMeasureLevel() == IBINVariable::MeasureContinuous,
       isNumeric ? dynamic_cast<const BINNumericUserMissing*>(missing) : nullptr});
}

// A status is made only where there is something to say: making one for every record would cost as
// much as preparing it.
bool RecordPreparer::Prepare(const MCCommon::Record& in, const RecordSlots& out,
                             MCStatus& warning) {
  if (fWeightEncoder != nullptr) {
    const double rawWeight = in[fWeightVariable];
    const double weight = fWeightEncoder->Encode(rawWeight);
    if (MCMV::IsMissing(weight)) {
      NoteDropped(rawWeight);
      return false;
    }
    if (std::isnan(weight)) ++fReport->nanWeights;
    out[fWeightFile] = weight;
  }
  if (fHasTarget && !PrepareTarget(in[fTargetVariable], out[0])) RefuseTarget(warning);
  for (const Attribute& attribute : fAttributes) {
    const double value = in[attribute.variable];
    double& slot = out[attribute.file];
    if (attribute.isContinuous) {
      const bool isMissing = attribute.missing != nullptr && attribute.missing->Contains(value);
      slot = isMissing ? MCMV::Missing() : value;
    } else if (MCMV::IsMissing(value) || value == -1.0) {
      slot = MCMV::Missing();
    } else if (!StoreCategory(value, ToCategoryCode(value), {attribute.variable, attribute.file},
                              slot)) {
      warning =
          With(Warning(StatusCode::kCategoryCodeOutOfRange), static_cast<long>(attribute.file));
    }
  }
  return true;
}

void RecordPreparer::RefuseTarget(MCStatus& warning) const {
  const auto target = static_cast<long>(fTargetVariable);
  if (fVariables.GetNumCatVar() <= 1) {
    throw StatusError(With(Error(StatusCode::kCategoryCodeOutOfRange), target));
  }
  warning = With(Warning(StatusCode::kCategoryCodeOutOfRange), target);
}

// The code -1 and the system-missing value both say that there is no category.
bool RecordPreparer::PrepareTarget(double value, double& slot) {
  const int code = ToCategoryCode(value);
  if (code != -1 && !MCMV::IsMissing(value)) {
    return StoreCategory(value, code, {fTargetVariable, 0}, slot);
  }
  slot = MCMV::Missing();
  return true;
}

// False at the first code of the file that is out of range.
bool RecordPreparer::StoreCategory(double value, int code, const Place& place, double& slot) {
  const std::size_t file = place.file;
  slot = 0.0;
  if (!fUsable[file]) return true;
  if (!IsCategoryCode(code)) {
    fUsable[file] = false;
    fHasStopped[file] = true;
    fBuffer.Close(file);
    NoteRefused(value, place.variable);
    return false;
  }
  slot = value;
  if (code > fLargestCodes[file]) {
    fLargestCodes[file] = code;
    const IBINVariable* const variable = fVariables.GetVarAt(static_cast<int>(place.variable));
    if (code >= variable->GetNumberOfCategories()) NoteRefused(value, place.variable);
  }
  return true;
}

void RecordPreparer::NoteDropped(double rawWeight) {
  const auto* const missing =
      dynamic_cast<const BINNumericUserMissing*>(fWeightEncoder->GetUserMissingInfo());
  const bool isMissing =
      MCMV::IsMissing(rawWeight) || (missing != nullptr && missing->Contains(rawWeight));
  ++(isMissing ? fReport->missingWeights : fReport->weightsRoundedToZero);
}

void RecordPreparer::NoteRefused(double code, std::size_t variable) {
  const int index = static_cast<int>(variable);
  std::vector<RefusedCode>& codes = fReport->refusedCodes;
  const bool isKnown = std::any_of(codes.begin(), codes.end(), [&](const RefusedCode& refused) {
    return refused.variable == index;
  });
  if (!isKnown) codes.push_back({index, code, fReport->recordsRead});
}

}  // namespace MCBinning
