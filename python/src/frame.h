#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace MCBinPython {

// Memory of a result, shared by all who look at it.
struct FrameBuffer {
  std::shared_ptr<const void> owner;
  const void* data = nullptr;

  FrameBuffer() = default;
  template <typename Value>
  explicit FrameBuffer(std::vector<Value> values) {
    auto kept = std::make_shared<const std::vector<Value>>(std::move(values));
    data = kept->data();
    owner = std::move(kept);
  }
};

// A column of results, laid out as Arrow has it: the buffers of its type after the validity, which
// is null when nothing is missing.
struct FrameColumn {
  std::string name;
  std::string format;  // in Arrow's letters
  std::size_t length = 0;
  std::size_t missingCount = 0;
  std::vector<FrameBuffer> buffers;
  std::vector<FrameColumn> children;              // of intervals: left and right
  std::shared_ptr<const FrameColumn> dictionary;  // of labels
  std::vector<std::string> labels;                // the same as texts
};

// Bins by index, missing where it is -1.
FrameColumn MakeIndexes(std::string name, std::vector<std::int32_t> indexes);

// Whole numbers, none of them missing.
FrameColumn MakeCounts(std::string name, std::vector<std::int64_t> counts);

// Numbers, missing where they are NaN.
FrameColumn MakeNumbers(std::string name, std::vector<double> numbers);

FrameColumn MakeTexts(std::string name, const std::vector<std::optional<std::string>>& texts);

// One label for each index.
FrameColumn MakeLabels(std::string name, std::vector<std::int32_t> indexes,
                       std::vector<std::string> labels);

// The ends of intervals, both missing where the left one is NaN.
FrameColumn MakeIntervals(std::string name, std::vector<double> left, std::vector<double> right);

// Results side by side, all of one length. Does not change once a caller has it.
struct Frame {
  std::vector<FrameColumn> columns;
  std::size_t length = 0;

  void Add(FrameColumn column) {
    length = column.length;
    columns.push_back(std::move(column));
  }
};

}  // namespace MCBinPython
