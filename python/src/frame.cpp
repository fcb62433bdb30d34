#include "frame.h"

#include <cmath>

namespace MCBinPython {

namespace {

// A column with its validity alone. `isMissing` tells it of an index.
template <typename IsMissing>
FrameColumn MakeColumn(std::string name, std::string format, std::size_t length,
                       const IsMissing& isMissing) {
  FrameColumn column;
  column.name = std::move(name);
  column.format = std::move(format);
  column.length = length;
  for (std::size_t i = 0; i < length; ++i) column.missingCount += isMissing(i) ? 1 : 0;
  column.buffers.emplace_back();
  if (column.missingCount == 0) return column;
  std::vector<std::uint8_t> validity((length + 7) / 8);
  for (std::size_t i = 0; i < length; ++i) {
    validity[i / 8] |= static_cast<std::uint8_t>((isMissing(i) ? 0U : 1U) << (i % 8));
  }
  column.buffers.back() = FrameBuffer(std::move(validity));
  return column;
}

}  // namespace

FrameColumn MakeIndexes(std::string name, std::vector<std::int32_t> indexes) {
  FrameColumn column = MakeColumn(std::move(name), "i", indexes.size(),
                                  [&](std::size_t i) { return indexes[i] < 0; });
  column.buffers.emplace_back(std::move(indexes));
  return column;
}

FrameColumn MakeCounts(std::string name, std::vector<std::int64_t> counts) {
  FrameColumn column =
      MakeColumn(std::move(name), "l", counts.size(), [](std::size_t) { return false; });
  column.buffers.emplace_back(std::move(counts));
  return column;
}

FrameColumn MakeNumbers(std::string name, std::vector<double> numbers) {
  FrameColumn column = MakeColumn(std::move(name), "g", numbers.size(),
                                  [&](std::size_t i) { return std::isnan(numbers[i]); });
  column.buffers.emplace_back(std::move(numbers));
  return column;
}

FrameColumn MakeTexts(std::string name, const std::vector<std::optional<std::string>>& texts) {
  FrameColumn column = MakeColumn(std::move(name), "U", texts.size(),
                                  [&](std::size_t i) { return !texts[i].has_value(); });
  std::vector<std::int64_t> offsets = {0};
  std::vector<char> bytes;
  for (const std::optional<std::string>& text : texts) {
    if (text) bytes.insert(bytes.end(), text->begin(), text->end());
    offsets.push_back(static_cast<std::int64_t>(bytes.size()));
    column.labels.push_back(text.value_or(""));
  }
  column.buffers.emplace_back(std::move(offsets));
  column.buffers.emplace_back(std::move(bytes));
  return column;
}

FrameColumn MakeLabels(std::string name, std::vector<std::int32_t> indexes,
                       std::vector<std::string> labels) {
  FrameColumn column = MakeIndexes(std::move(name), std::move(indexes));
  column.dictionary =
      std::make_shared<const FrameColumn>(MakeTexts("", {labels.begin(), labels.end()}));
  column.labels = std::move(labels);
  return column;
}

FrameColumn MakeIntervals(std::string name, std::vector<double> left, std::vector<double> right) {
  FrameColumn column = MakeColumn(std::move(name), "+s", left.size(),
                                  [&](std::size_t i) { return std::isnan(left[i]); });
  column.children.push_back(MakeNumbers("left", std::move(left)));
  column.children.push_back(MakeNumbers("right", std::move(right)));
  return column;
}

}  // namespace MCBinPython
