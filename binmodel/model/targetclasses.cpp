#include "binmodel/model/targetclasses.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>
#include <optional>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"

namespace MCBinModel {

namespace {

std::optional<std::size_t> FindClass(const VariableInfo& target, const std::string& name) {
  const auto find = [](const auto& categories, const auto& category) -> std::optional<std::size_t> {
    const auto found = std::find(categories.begin(), categories.end(), category);
    if (found == categories.end()) return std::nullopt;
    return static_cast<std::size_t>(found - categories.begin());
  };
  if (target.kind == VariableKind::kStringCategorical) return find(target.texts, name);
  const ParsedNumber number = ParseNumber(name);
  if (number.kind != NumberKind::kNumber) return std::nullopt;
  return find(target.numbers, number.value);
}

std::string ListClasses(const std::vector<VariableInfo>& targets) {
  constexpr std::size_t kMostNamed = 10;
  std::string list;
  for (const VariableInfo& target : targets) {
    list += fmt::format("{}{} has", list.empty() ? "" : "; ", QuotedText(target.name));
    const std::size_t count = target.GetCategoryCount();
    for (std::size_t code = 0; code < std::min(count, kMostNamed); ++code) {
      list += fmt::format("{} {}", code == 0 ? "" : ",", QuotedText(target.GetLabel(code)));
    }
    if (count > kMostNamed) list += " and more";
  }
  return list;
}

// The codes of a target's classes in the order that they are to stand in.
std::vector<std::size_t> MakeOrder(const VariableInfo& target,
                                   const std::vector<std::string>& first) {
  std::vector<std::size_t> order(target.GetCategoryCount());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return target.kind == VariableKind::kNumericCategorical ? target.numbers[a] < target.numbers[b]
                                                            : target.texts[a] < target.texts[b];
  });
  auto place = order.begin();
  for (const std::string& name : first) {
    const std::optional<std::size_t> code = FindClass(target, name);
    if (!code) continue;
    const auto from = std::find(place, order.end(), *code);
    if (from != order.end()) std::rotate(place++, from, from + 1);
  }
  return order;
}

template <typename Value>
void Reorder(std::vector<Value>& values, const std::vector<std::size_t>& order) {
  if (values.empty()) return;
  std::vector<Value> ordered;
  ordered.reserve(order.size());
  for (const std::size_t code : order) ordered.push_back(std::move(values[code]));
  values = std::move(ordered);
}

}  // namespace

void RequireClasses(const std::vector<VariableInfo>& targets,
                    const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    if (targets.empty()) {
      throw Refusal(RefusalCode::kNoTargets, {"", name, ""}, "these bins have no target");
    }
    const bool isKnown = std::any_of(
        targets.begin(), targets.end(),
        [&](const VariableInfo& target) { return FindClass(target, name).has_value(); });
    if (isKnown) continue;
    const std::string classes = ListClasses(targets);
    throw Refusal(RefusalCode::kUnknownClass, {"", name, classes},
                  fmt::format("no target has the class {}; {}", QuotedText(name), classes));
  }
}

void ChooseEvents(std::vector<VariableInfo>& targets, const std::vector<std::string>& names) {
  RequireClasses(targets, names);
  std::vector<std::optional<std::size_t>> chosen(targets.size());
  for (const std::string& name : names) {
    const VariableInfo* otherTarget = nullptr;
    bool isUsed = false;
    for (std::size_t i = 0; i < targets.size(); ++i) {
      const std::optional<std::size_t> code = FindClass(targets[i], name);
      if (!code) continue;
      if (targets[i].GetCategoryCount() != 2) {
        otherTarget = &targets[i];
        continue;
      }
      if (chosen[i].value_or(*code) != *code) {
        throw Refusal(RefusalCode::kTwoEvents, {"", targets[i].name, ""},
                      fmt::format("the target {} has one event, and both of its classes are named",
                                  QuotedText(targets[i].name)));
      }
      chosen[i] = code;
      isUsed = true;
    }
    if (!isUsed) {
      throw Refusal(RefusalCode::kEvidenceNeedsTwoClasses, {"", otherTarget->name, ""},
                    fmt::format("an event needs a target with two classes; {} has {}",
                                QuotedText(otherTarget->name), otherTarget->GetCategoryCount()));
    }
  }
  for (std::size_t i = 0; i < targets.size(); ++i) {
    if (chosen[i]) targets[i].event = chosen[i];
  }
}

void OrderClasses(BinModel& model, const std::vector<std::string>& first) {
  RequireClasses(model.targets, first);
  std::vector<std::vector<std::size_t>> orders;
  for (VariableInfo& target : model.targets) {
    orders.push_back(MakeOrder(target, first));
    const std::vector<std::size_t>& order = orders.back();
    Reorder(target.numbers, order);
    Reorder(target.texts, order);
    if (target.event) {
      target.event = static_cast<std::size_t>(std::find(order.begin(), order.end(), *target.event) -
                                              order.begin());
    }
  }
  for (AttributeBins& bins : model.results) {
    if (!bins.target) continue;
    const std::vector<std::size_t>& order = orders[*bins.target];
    for (std::vector<double>& weights : bins.classWeights) Reorder(weights, order);
    if (bins.missing) Reorder(bins.missing->classWeights, order);
  }
}

}  // namespace MCBinModel
