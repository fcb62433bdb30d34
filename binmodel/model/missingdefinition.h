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
    double low;
    double high;
  };

  std::vector<double> numbers;
  std::optional<Interval> interval;
  std::vector<std::string> texts;

  bool IsEmpty() const { return numbers.empty() && !interval && texts.empty(); }
};

}  // namespace MCBinModel
