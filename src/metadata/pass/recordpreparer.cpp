#include "metadata/pass/recordpreparer.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <utility>

#include "common/guard.h"
#include "common/missing.h"
#include "common/prefetch.h"
#include "common/runreport.h"
#include "common/statuscodes.h"
#include "metadata/binnumericusermissing.h"
#include "metadata/binroundencoder.h"
#include "metadata/binvarlist.h"
#include "metadata/pass/categorycode.h"
#include "metadata/pass/columnvalues.h"

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
  if (fWeightEncoder != nullptr && !PrepareWeight(in[fWeightVariable], out[fWeightFile])) {
    return false;
  }
  if (fHasTarget && !PrepareTarget(in[fTargetVariable], out[0])) RefuseTarget(warning);
  FetchNext(out);
  for (const Attribute& attribute : fAttributes) {
    if (!PrepareAttribute(attribute, in[attribute.variable], out[attribute.file])) {
      warning =
          With(Warning(StatusCode::kCategoryCodeOutOfRange), static_cast<long>(attribute.file));
    }
  }
  return true;
}

// The lines of memory that the records to come are written to: to wait for each of them would take
// most of the time when there are many attributes. All slots of a record lie alike in their lines.
void RecordPreparer::FetchNext(const RecordSlots& out) const {
  if (reinterpret_cast<std::uintptr_t>(out.first) % kLine >= sizeof(double)) return;
  for (const Attribute& attribute : fAttributes) FetchAhead<true>(&out[attribute.file], kLine);
}

// Column by column, the same rules. Values that change are first brought to their slots, whatever
// their column looks like in the host's memory.
std::size_t RecordPreparer::PrepareWeightsAndTargets(const BlockPart& in, const RecordSlots& out) {
  const std::size_t count = fKeptCount = PrepareWeights(in, out);
  if (count > 0 && fHasTarget) {
    double* const slots = &out[0];
    Gather(in, fTargetVariable, slots);
    MCStatus warning;
    const std::size_t toDo = AreKnownCodes(slots, count, 0) ? 0 : count;
    for (std::size_t i = 0; i < toDo; ++i) {
      if (!PrepareTarget(slots[i], slots[i])) RefuseTarget(warning);
    }
  }
  return count;
}

void RecordPreparer::PrepareAttributes(const BlockPart& in, const RecordSlots& out) {
  for (const Attribute& attribute : fAttributes) {
    double* const slots = &out[attribute.file];
    const double* const values = PrepareAttribute(in, attribute.file, slots);
    if (values != slots) std::copy_n(values, fKeptCount, slots);
  }
}

const double* RecordPreparer::PrepareAttribute(const BlockPart& in, std::size_t file,
                                               double* slots) {
  const Attribute& attribute = fAttributes[file - GetFirstAttributeFile()];
  const double* const values = FindWhole(in, attribute.variable);
  if (values != nullptr && StayAsTheyAre(attribute, values)) return values;
  Gather(in, attribute.variable, slots);
  if (values == nullptr && StayAsTheyAre(attribute, slots)) return slots;
  for (std::size_t i = 0; i < fKeptCount; ++i) PrepareAttribute(attribute, slots[i], slots[i]);
  return slots;
}

// Where the values of the records that are kept lie in the host's memory, if they do so one after
// the other and all of them.
const double* RecordPreparer::FindWhole(const BlockPart& in, std::size_t variable) const {
  const BlockColumn& column = in.columns[variable];
  const bool isWhole =
      column.values != nullptr && column.stride == 1 && column.validity == nullptr && fKept.empty();
  return isWhole ? column.values + in.first : nullptr;
}

bool RecordPreparer::StayAsTheyAre(const Attribute& attribute, const double* values) const {
  return attribute.isContinuous ? attribute.missing == nullptr
                                : AreKnownCodes(values, fKeptCount, attribute.file);
}

// Whether all values are codes, none of them larger than the file has had: they stay as they are,
// also where one of them is the missing value.
bool RecordPreparer::AreKnownCodes(const double* values, std::size_t count,
                                   std::size_t file) const {
  const double end = fLargestCodes[file] + 1;
  return fUsable[file] && AreFromZeroTo(end, count, [values](std::size_t i) { return values[i]; });
}

std::size_t RecordPreparer::PrepareWeights(const BlockPart& in, const RecordSlots& out) {
  fKept.clear();
  if (fWeightEncoder == nullptr) return in.count;
  double* const slots = &out[fWeightFile];
  Gather(in, fWeightVariable, slots);
  std::size_t count = 0;
  for (std::size_t i = 0; i < in.count; ++i) {
    const bool isKept = PrepareWeight(slots[i], slots[count]);
    if (!isKept && fKept.empty()) {
      fKept.resize(in.count);
      std::iota(fKept.begin(), fKept.end(), std::size_t{0});
    }
    if (!isKept) continue;
    if (!fKept.empty()) fKept[count] = i;
    ++count;
  }
  if (!fKept.empty()) fKept.resize(count);
  return count;
}

// The values of the records that are kept, once it is known which are.
void RecordPreparer::Gather(const BlockPart& in, std::size_t variable, double* slots) const {
  UseValues(in.columns[variable], in.first, [&](const auto& valueAt) {
    if (fKept.empty()) {
      for (std::size_t i = 0; i < in.count; ++i) slots[i] = valueAt(i);
    } else {
      for (std::size_t i = 0; i < fKept.size(); ++i) slots[i] = valueAt(fKept[i]);
    }
  });
}

std::size_t RecordPreparer::CountUnremarkable(const BlockPart& in) const {
  BlockPart part = in;
  if (fHasTarget) part.count = CountUnremarkable(part, {fTargetVariable, 0}, true);
  for (const Attribute& attribute : fAttributes) {
    if (attribute.isContinuous) continue;
    part.count = CountUnremarkable(part, {attribute.variable, attribute.file}, false);
  }
  return part.count;
}

std::size_t RecordPreparer::CountUnremarkable(const BlockPart& in, const Place& place,
                                              bool isTarget) const {
  if (!fUsable[place.file]) return in.count;
  constexpr int kEnd = kLargestCategoryCode + 1;
  const IBINVariable& variable = *fVariables.GetVarAt(static_cast<int>(place.variable));
  const int declared = IsNoted(place.variable) ? kEnd : variable.GetNumberOfCategories();
  const int end = std::clamp(declared, fLargestCodes[place.file] + 1, kEnd);
  return UseValues(in.columns[place.variable], in.first, [&](const auto& valueAt) {
    if (AreFromZeroTo(end, in.count, valueAt)) return in.count;
    for (std::size_t i = 0; i < in.count; ++i) {
      const double value = valueAt(i);
      const int code = ToCategoryCode(value);
      const bool isNone = MCMV::IsMissing(value) || (isTarget ? code == -1 : value == -1.0);
      const bool isRemarkable = !isNone && (code < 0 || code >= end);
      if (isRemarkable && !IsDropped(in, i)) return i;
    }
    return in.count;
  });
}

bool RecordPreparer::IsDropped(const BlockPart& in, std::size_t index) const {
  return fWeightEncoder != nullptr &&
         UseValues(in.columns[fWeightVariable], in.first + index, [&](const auto& valueAt) {
           return MCMV::IsMissing(fWeightEncoder->Encode(valueAt(0)));
         });
}

// False when the record is to be dropped.
bool RecordPreparer::PrepareWeight(double rawWeight, double& slot) {
  const double weight = fWeightEncoder->Encode(rawWeight);
  if (MCMV::IsMissing(weight)) {
    NoteDropped(rawWeight);
    return false;
  }
  if (std::isnan(weight)) ++fReport->nanWeights;
  slot = weight;
  return true;
}

// False at the first code of the file that is out of range.
bool RecordPreparer::PrepareAttribute(const Attribute& attribute, double value, double& slot) {
  if (attribute.isContinuous) {
    const bool isMissing = attribute.missing != nullptr && attribute.missing->Contains(value);
    slot = isMissing ? MCMV::Missing() : value;
    return true;
  }
  if (MCMV::IsMissing(value) || value == -1.0) {
    slot = MCMV::Missing();
    return true;
  }
  return StoreCategory(value, ToCategoryCode(value), {attribute.variable, attribute.file}, slot);
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
  if (IsNoted(variable)) return;
  fReport->refusedCodes.push_back({static_cast<int>(variable), code, fReport->recordsRead});
}

bool RecordPreparer::IsNoted(std::size_t variable) const {
  const std::vector<RefusedCode>& codes = fReport->refusedCodes;
  return std::any_of(codes.begin(), codes.end(), [&](const RefusedCode& refused) {
    return refused.variable == static_cast<int>(variable);
  });
}

}  // namespace MCBinning
