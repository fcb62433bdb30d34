#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace MCBinning {

// Two parallel lists, values and their labels, as user-missing definitions keep them.

// Appends to both lists, or to neither when memory runs out.
template <typename Value>
void AppendLabelled(std::vector<Value>& values, std::vector<std::string>& labels,
                    const Value& value, const std::string& label) {
  labels.push_back(label);
  try {
    values.push_back(value);
  } catch (...) {
    labels.pop_back();
    throw;
  }
}

// A heading and a line per value; nothing for empty lists.
template <typename Value>
void DisplayLabelled(std::ostream& os, const std::vector<Value>& values,
                     const std::vector<std::string>& labels) {
  if (values.empty()) return;
  os << "Discrete missing values:\n";
  for (std::size_t i = 0; i < values.size(); ++i) {
    os << '\t' << i << '\t' << values[i] << ", label = " << labels[i] << '\n';
  }
}

}  // namespace MCBinning
