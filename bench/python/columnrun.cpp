// Usage: columnrun FILE ROWS COLUMNS
// Bins columns in memory as a C++ host does and prints the milliseconds of processor time that one
// run took, the least of three. FILE has native doubles, column by column, the last one the classes
// 0 and 1.

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "binmodel/run/binrun.h"
#include "binmodel/run/memorycolumns.h"

namespace {

double Now() { return 1e3 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

double RunOnce(const std::vector<double>& values, std::size_t rows, std::size_t columns) {
  const double begin = Now();
  MCBinModel::MemoryColumns source(rows);
  MCBinModel::RunVariables variables;
  for (std::size_t column = 0; column + 1 < columns; ++column) {
    variables.attributes.emplace_back().name = "x" + std::to_string(column);
    variables.attributeColumns.push_back(source.Add({.values = values.data() + column * rows}));
  }
  MCBinModel::VariableInfo& target = variables.targets.emplace_back();
  target.name = "y";
  target.kind = MCBinModel::VariableKind::kNumericCategorical;
  target.numbers = {0.0, 1.0};
  variables.targetColumns = {source.Add({.values = values.data() + (columns - 1) * rows})};
  const std::string directory = std::filesystem::temp_directory_path();
  const MCBinModel::BinModel model =
      MCBinModel::MakeBins({}, std::move(variables), source, {.tempDir = directory});
  if (model.results.size() + 1 != columns) return std::numeric_limits<double>::infinity();
  return Now() - begin;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: columnrun FILE ROWS COLUMNS\n";
    return 2;
  }
  const std::size_t rows = std::stoul(argv[2]);
  const std::size_t columns = std::stoul(argv[3]);
  std::vector<double> values(rows * columns);
  std::ifstream file(argv[1], std::ios::binary);
  if (!file.read(reinterpret_cast<char*>(values.data()),
                 static_cast<std::streamsize>(values.size() * sizeof(double)))) {
    std::cerr << argv[1] << " cannot be read\n";
    return 1;
  }
  double best = std::numeric_limits<double>::infinity();
  for (int round = 0; round < 3; ++round) {
    best = std::min(best, RunOnce(values, rows, columns));
  }
  std::cout << best << '\n';
}
