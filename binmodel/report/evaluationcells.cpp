#include "binmodel/report/evaluationcells.h"

#include <algorithm>

#include "binmodel/apply/binvalues.h"
#include "binmodel/model/binlookup.h"
#include "binmodel/report/comparedbins.h"
#include "binmodel/report/numbertext.h"
#include "binmodel/report/reportcells.h"
#include "binmodel/text/displaytext.h"

namespace MCBinModel {

std::vector<std::string> BinNames(const BinModel& model, const AttributeBins& bins) {
  constexpr std::size_t kIntervalWidth = 60;
  const VariableInfo& attribute = model.GetAttribute(bins);
  const bool rightClosed = model.settings.rightClosed;
  const NumberText numbers(attribute, bins);
  std::vector<std::string> names;
  for (std::size_t bin = 0; bin <= bins.cutPoints.size(); ++bin) {
    names.push_back(
        attribute.IsCategorical()
            ? ElideText(BinLabel(attribute, bins.cutPoints, bin, rightClosed), kIntervalWidth)
            : numbers.OfInterval(bin, rightClosed));
  }
  names.emplace_back(kMissingLabel);
  return names;
}

std::string TargetFact(const BinModel& model, const VariableInfo* target) {
  if (target == nullptr) return {};
  std::string fact = ", target " + ElideText(target->name, kNameWidth);
  const std::string event = EventFact(model, *target);
  return event.empty() ? fact : fact + " (" + event + ")";
}

std::uint64_t UsedRecords(const Recount& recount) {
  return recount.recordCount - recount.dropped.GetTotal();
}

bool AnyHasMissing(const BinModel& model, const NamedRecount& data,
                   const std::vector<std::size_t>& order) {
  return std::any_of(order.begin(), order.end(), [&](std::size_t index) {
    return ComparedBins(model, data.recount.results[index]).HasMissing();
  });
}

}  // namespace MCBinModel
