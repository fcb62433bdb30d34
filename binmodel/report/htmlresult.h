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

// Whether the result has no chart of its own, as there is nothing to tell apart: a row of
// RenderHtmlPlainTable() takes its place.
bool IsPlainHtmlResult(const AttributeBins& bins);

// A table of such results, if there are any; the id of a row is "r<result>", that of its heading is
// `id`.
std::string RenderHtmlPlainTable(const BinModel& model, const std::vector<std::size_t>& results,
                                 const HtmlTarget& target, const std::string& id);

// A measure with four decimals: "∞" when it is infinite, "–" when it does not exist.
std::string HtmlMeasure(const std::optional<double>& measure);

// The information value of a target with two classes; "–" where none were counted.
std::string HtmlInformationValue(const BinModel& model, const AttributeBins& bins);

// A weight's share of a total; "–" without total.
std::string HtmlShare(double part, double whole);

}  // namespace MCBinModel
