#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace MCBinModel {

// The values of one column that count as missing, beside the empty ones.
struct MissingDefinition {
  // Closed; an open end is the largest finite double with its sign.
  struct Interval {
    double low;
    double high;
  };

  std::string column;
  std::vector<std::string> values;  // as written; a numeric column needs numbers
  std::optional<Interval> interval;

  bool IsEmpty() const { return values.empty() && !interval; }

  // The values as numbers. Throws UsageError when one is not.
  std::vector<double> NumericValues() const;
};

// Reads NAME=v1,v2,low:high. "low:" and ":high" are open to one side; a value that holds
// a comma or looks like an interval is written in double quotes. Throws UsageError.
MissingDefinition ParseMissingDefinition(std::string_view text);

}  // namespace MCBinModel
