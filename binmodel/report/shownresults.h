#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "binmodel/report/binreport.h"
#include "binmodel/report/reportwriter.h"

namespace MCBinModel {

// Which results a report for people shows, and how much of them: a thousand tables are read by
// nobody.
struct ShownResults {
  std::vector<std::size_t> order;  // indexes; those with cut points first
  std::size_t withCutPoints = 0;   // of them
  std::size_t tables = 0;          // how many get a table of their own
  std::size_t all = 0;             // results that there are, shown or not

  // `order` as it shall be among those with and without cut points.
  ShownResults(std::vector<std::size_t> order,
               const std::function<const AttributeBins&(std::size_t)>& binsOf,
               const TextStyle& style);

  // Says below a title what is not shown.
  void AddFacts(ReportWriter& writer) const;
};

}  // namespace MCBinModel
