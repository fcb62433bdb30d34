#pragma once

#include <optional>
#include <string>
#include <vector>

namespace MCBinModel {

// The values of one variable that count as missing, beside those that are none: numbers and an
// interval of a numeric variable, texts of a variable of texts. The other kind's stay empty.
struct MissingDefinition {
  // Closed; an open end is the largest finite double with its sign.
  struct Interval {
    double low;   // the smallest missing value
    double high;  // the largest one; not below `low`
  };

  std::vector<double> numbers;       // each of these is missing
  std::optional<Interval> interval;  // and everything in here
  std::vector<std::string> texts;    // compared byte by byte

  // Whether nothing is missing but what is no value at all.
  bool IsEmpty() const { return numbers.empty() && !interval && texts.empty(); }
};

}  // namespace MCBinModel
