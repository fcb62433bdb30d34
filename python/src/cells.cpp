#include "cells.h"

#include <mcbinmodel/model/refusal.h>
#include <mcbinning/common/missing.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace MCBinPython {

namespace {

template <typename Offset>
std::string_view TextBetween(const Chunk& chunk, std::size_t index) {
  Offset bounds[2];
  std::memcpy(bounds, chunk.At(index), sizeof bounds);
  return {chunk.texts + bounds[0], static_cast<std::size_t>(bounds[1] - bounds[0])};
}

// A view is 16 bytes: the length, then a short text itself, or its first bytes, the buffer that it
// is in and where it begins there.
std::string_view TextOfView(const Chunk& chunk, std::size_t index) {
  constexpr std::int32_t kLongestInside = 12;
  const char* const view = chunk.At(index);
  std::int32_t parts[4];
  std::memcpy(parts, view, sizeof parts);
  const auto length = static_cast<std::size_t>(parts[0]);
  if (parts[0] <= kLongestInside) return {view + sizeof(std::int32_t), length};
  return {static_cast<const char*>(chunk.textBuffers[parts[2]]) + parts[3], length};
}

std::string_view TextAt(Storage storage, const Chunk& chunk, std::size_t index) {
  switch (storage) {
    case Storage::kText32:
      return TextBetween<std::int32_t>(chunk, index);
    case Storage::kText64:
      return TextBetween<std::int64_t>(chunk, index);
    case Storage::kTextView:
      return TextOfView(chunk, index);
    default: {
      std::string_view text;
      std::memcpy(&text, chunk.At(index), sizeof text);
      return text;
    }
  }
}

void ReadTexts(const Column& column, Cells& cells) {
  std::size_t record = 0;
  for (const Chunk& chunk : column.chunks) {
    for (std::size_t i = 0; i < chunk.length; ++i, ++record) {
      if (chunk.IsValid(i)) {
        cells.texts[record] = TextAt(column.storage, chunk, i);
      } else {
        SetInvalid(cells, record);
      }
    }
  }
}

void ReadDictionaryTexts(const Column& column, Cells& cells) {
  std::vector<double> indexes(column.length);
  column.ReadNumbers(0, column.length, indexes.data());
  std::size_t record = 0;
  for (const Chunk& chunk : column.chunks) {
    for (std::size_t i = 0; i < chunk.length; ++i, ++record) {
      const auto found = FindInDictionary(*chunk.dictionary, indexes[record]);
      if (found) {
        cells.texts[record] = chunk.dictionary->texts[*found];
      } else {
        SetInvalid(cells, record);
      }
    }
  }
}

}  // namespace

void SetInvalid(Cells& cells, std::size_t index) {
  cells.validity[index / 8] &= static_cast<std::uint8_t>(~(1U << (index % 8)));
}

std::optional<std::size_t> FindInDictionary(const Cells& dictionary, double index) {
  if (!(index >= 0.0)) return std::nullopt;
  const std::size_t size = std::max(dictionary.texts.size(), dictionary.numbers.size());
  if (index >= static_cast<double>(size)) {
    throw MCBinModel::Refusal("a column has an index that its dictionary does not have");
  }
  const auto found = static_cast<std::size_t>(index);
  return dictionary.IsValid(found) ? std::optional(found) : std::nullopt;
}

void CheckCategories(const Column& column) {
  if (!column.IsTime()) return;
  throw MCBinModel::Refusal(
      MCBinModel::RefusalCode::kInput, {.place = {}, .subject = column.name, .detail = {}},
      "column '" + column.name + "' holds dates, which are no categories; make them text first");
}

Cells ReadCells(const Column& column) {
  Cells cells;
  cells.validity.assign((column.length + 7) / 8, 0xFF);
  if (column.isText) {
    cells.texts.resize(column.length);
    (column.isDictionary ? ReadDictionaryTexts : ReadTexts)(column, cells);
    return cells;
  }
  cells.numbers.resize(column.length);
  column.ReadNumbers(0, column.length, cells.numbers.data());
  for (std::size_t i = 0; i < column.length; ++i) {
    if (std::isnan(cells.numbers[i]) || MCMV::IsMissing(cells.numbers[i])) SetInvalid(cells, i);
  }
  return cells;
}

}  // namespace MCBinPython
