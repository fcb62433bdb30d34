#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

#include "metadata/columnrecorditerator.h"
#include "support/dice.h"
#include "support/scenario.h"

// Hands out a scenario's records by column, in blocks of any size, whose columns lie in memory in
// every way they can. The same seed gives the same blocks.
class ScenarioBlocks : public MCBinning::ColumnRecordIterator {
 public:
  // Borrows the scenario. Blocks have up to `mostRecords` records.
  ScenarioBlocks(const Scenario& scenario, std::uint64_t seed, int mostRecords)
      : fScenario(scenario),
        fDice(seed),
        fMostRecords(mostRecords),
        fMemory(scenario.variables.size()),
        fColumns(scenario.variables.size()) {}

  std::function<void()> onBlock;
  int blocks = 0;                                                   // so far, the end included
  std::size_t shortFrom = std::numeric_limits<std::size_t>::max();  // these lack the last column

 protected:
  MCBinning::RecordBlock NextBlock() override {
    ++blocks;
    if (onBlock) onBlock();
    const std::size_t left = fScenario.variables.front().values.size() - fNext;
    std::size_t count = std::min(left, static_cast<std::size_t>(1 + fDice.Roll(fMostRecords)));
    if (fNext < shortFrom) count = std::min(count, shortFrom - fNext);
    for (std::size_t i = 0; i < fColumns.size(); ++i) {
      const auto first = fScenario.variables[i].values.begin() + static_cast<std::ptrdiff_t>(fNext);
      fColumns[i] = LayOut({first, first + static_cast<std::ptrdiff_t>(count)}, fMemory[i]);
    }
    const std::size_t lacking = fNext >= shortFrom ? 1 : 0;
    fNext += count;
    return {count, fColumns.data(), fColumns.size() - lacking};
  }

 private:
  struct Memory {
    std::vector<double> values;
    std::vector<std::uint8_t> validity;
  };

  MCBinning::BlockColumn LayOut(const std::vector<double>& values, Memory& memory) {
    const auto count = static_cast<std::ptrdiff_t>(values.size());
    const auto isMissing = [](double value) { return value == reference::kMissing; };
    const auto isFirst = [&](double value) { return value == values.front() && value != 0.0; };
    if (count > 0 && std::all_of(values.begin(), values.end(), isMissing) && fDice.OneIn(2)) {
      return {nullptr, 1, nullptr, 0};
    }
    if (count > 0 && std::all_of(values.begin(), values.end(), isFirst) && fDice.OneIn(2)) {
      memory.values = {values.front()};
      return {memory.values.data(), 0, nullptr, 0};
    }
    const std::ptrdiff_t step = 1 + (fDice.OneIn(2) ? fDice.Roll(4) : 0);
    const bool isReversed = step > 1 && fDice.OneIn(2);
    memory.values.assign(static_cast<std::size_t>(count * step + 1), 12345.0);
    const auto placeOf = [&](std::ptrdiff_t i) {
      return static_cast<std::size_t>((isReversed ? count - 1 - i : i) * step);
    };
    for (std::ptrdiff_t i = 0; i < count; ++i) {
      memory.values[placeOf(i)] = values[static_cast<std::size_t>(i)];
    }
    const double* const begin = memory.values.data() + (count > 0 ? placeOf(0) : 0);
    const std::ptrdiff_t stride = isReversed ? -step : step;
    if (fDice.OneIn(2)) return {begin, stride, nullptr, 0};

    const std::size_t offset = static_cast<std::size_t>(fDice.Roll(20));
    memory.validity.assign((offset + values.size()) / 8 + 1, 0xff);
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (!isMissing(values[i])) continue;
      memory.validity[(offset + i) / 8] &= static_cast<std::uint8_t>(~(1 << (offset + i) % 8));
      memory.values[placeOf(static_cast<std::ptrdiff_t>(i))] = 77.0;  // that nobody looks at
    }
    return {begin, stride, memory.validity.data(), offset};
  }

  const Scenario& fScenario;
  Dice fDice;
  const int fMostRecords;
  std::vector<Memory> fMemory;  // by variable
  std::vector<MCBinning::BlockColumn> fColumns;
  std::size_t fNext = 0;
};
