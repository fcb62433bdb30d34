#include "modelrun.h"

#include <chrono>
#include <stdexcept>

#include "binmodel/run/binrun.h"
#include "binmodel/run/memorycolumns.h"

namespace bench {

double SecondsOfModelRun(const Columns& columns, const std::string& directory, int jobs) {
  using Clock = std::chrono::steady_clock;
  MCBinModel::MemoryColumns source(columns.GetCaseCount());
  MCBinModel::RunVariables variables;
  for (const Column& attribute : columns.attributes) {
    const std::string name = "x" + std::to_string(variables.attributes.size());
    variables.attributes.emplace_back().name = name;
    variables.attributeColumns.push_back(source.Add({.values = attribute.data()}));
  }
  MCBinModel::VariableInfo& target = variables.targets.emplace_back();
  target.name = "class";
  target.kind = MCBinModel::VariableKind::kNumericCategorical;
  for (int code = 0; code < columns.classCount; ++code) target.numbers.push_back(code);
  variables.targetColumns = {source.Add({.values = columns.target.data()})};

  const auto begin = Clock::now();
  const MCBinModel::BinModel model = MCBinModel::MakeBins({.prebinAbove = 0}, variables, source,
                                                          {.tempDir = directory, .jobs = jobs});
  const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
  if (model.results.size() != columns.attributes.size()) throw std::runtime_error("bins missing");
  return seconds;
}

}  // namespace bench
