#pragma once

#include <optional>
#include <string>
#include <vector>

namespace MCBinModel {

// What a chart of bins shows; texts are as in the data, the chart makes them safe.
//
// Above, a bar for each bin, stacked of its parts, and a bar for what is missing, set apart; below,
// a line for each of the first `lineCount` parts with its share of the bins' weights. Colours are
// left to the page: part p is drawn with the classes "k<p>" (fill) and "l<p>" (stroke).
struct BinChart {
  struct Bin {
    std::vector<std::string> tooltip;  // its lines
    double weight;
    std::vector<double> parts;  // add up to the weight
  };

  std::string description;  // for those who cannot see it
  std::vector<Bin> bins;    // at least one

  // What is missing: no bar for weight 0, a hatched one without parts. With parts it is a bin like
  // the others, but that no line leads to it.
  Bin missing{{}, 0.0, {}};

  std::vector<std::string> borderLabels;  // between the bins, or
  std::vector<std::string> binLabels;     // below the bins
  std::size_t lineCount = 0;
  std::string lineCaption;                // what the lines are
  std::vector<double> overallShares;      // of each line, drawn dashed; may be empty
  std::optional<double> referenceWeight;  // drawn dashed
};

// The chart as an <svg> element. With many bins labels, marks and gaps give way; tooltips stay.
std::string RenderBinChart(const BinChart& chart);

}  // namespace MCBinModel
