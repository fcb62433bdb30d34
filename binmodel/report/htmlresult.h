#pragma once

#include <optional>
#include <string>
#include <vector>

#include "binmodel/measure/classgroups.h"
#include "binmodel/model/binmodel.h"

namespace MCBinModel {

// What the results of one target have in common.
struct HtmlTarget {
  std::vector<ClassGroup> groups;    // none without target
  std::optional<std::size_t> event;  // of a target with two classes
};

// The part of a report about one result, with chart and table; its id is "r<result>".
std::string RenderHtmlResult(const BinModel& model, std::size_t result, const HtmlTarget& target);

// A measure with four decimals: "∞" when it is infinite, "–" when it does not exist.
std::string HtmlMeasure(const std::optional<double>& measure);

// A weight's share of a total; "–" without total.
std::string HtmlShare(double part, double whole);

}  // namespace MCBinModel
