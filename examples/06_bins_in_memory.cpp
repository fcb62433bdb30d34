// Bins of arrays in memory, from making them to showing them: made, saved and read again, applied
// to new values, counted on other data, written as a query and as a page.
//
//   g++ -std=c++17 06_bins_in_memory.cpp $(pkg-config --cflags --libs mcbinmodel) -o bins_in_memory

#include <mcbinmodel/mcbinmodel.h>

#include <cstddef>
#include <exception>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "workdirectory.h"

namespace {

// A table with two columns, of sixty people; those between 30 and 45 buy.
struct Customers {
  std::vector<double> ages;
  std::vector<std::string_view> buys;

  explicit Customers(int youngest) {
    for (int age = youngest; age < youngest + 60; ++age) {
      ages.push_back(age);
      buys.push_back(age >= 30 && age <= 45 ? "yes" : "no");
    }
  }
};

// begin make
MCBinModel::BinModel MakeModel(const Customers& customers, const std::string& tempDir) {
  MCBinModel::MemoryColumns columns(customers.ages.size());
  MCBinModel::VariableInfo age;
  age.name = "age";
  MCBinModel::VariableInfo buys;
  buys.name = "buys";

  MCBinModel::RunVariables variables;
  variables.attributeColumns = {columns.Add({customers.ages.data()})};
  variables.targetColumns = {columns.AddCategories({customers.buys.data()}, buys)};
  variables.attributes = {age};
  variables.targets = {buys};  // with the categories that were found

  MCBinModel::RunControl control;
  control.tempDir = tempDir;
  MCBinModel::BinModel model = MCBinModel::MakeBins({}, variables, columns, control);
  model.source.name = "customers";
  return model;
}
// end make

// begin keep
void SaveModel(const MCBinModel::BinModel& model, const std::string& path) {
  std::ofstream file(path);
  file << MCBinModel::WriteBinFile(model);
  if (!file.flush()) throw std::runtime_error("cannot write " + path);
}
// end keep

// begin refine
MCBinModel::BinModel Refine(const MCBinModel::BinModel& model) {
  MCBinModel::RefineSettings settings;
  settings.maxBins = 2;
  settings.trend = MCBinModel::RateTrend::kEither;
  return MCBinModel::RefineModel(model, settings);
}
// end refine

// begin apply
void ShowBinsOf(const MCBinModel::BinModel& model, const std::vector<double>& ages) {
  const MCBinModel::AttributeBins& bins = model.results.front();
  const MCBinModel::VariableInfo& attribute = model.GetAttribute(bins);
  const MCBinModel::ValueCoder coder(attribute);
  for (const double age : ages) {
    const MCBinModel::CodedValue value = coder.Code(age);
    if (value.IsMissing()) continue;
    const std::size_t bin =
        MCBinModel::FindBin(bins.cutPoints, value.value, model.settings.rightClosed);
    std::cout << age << " is in bin " << bin << ", "
              << MCBinModel::BinLabel(attribute, bins.cutPoints, bin, model.settings.rightClosed)
              << '\n';
  }
}
// end apply

void Print(std::string_view text) { std::cout << text; }

// begin evaluate
void CompareWith(const MCBinModel::BinModel& model, const Customers& others) {
  const std::size_t count = others.ages.size();
  std::vector<double> ages(count);
  std::vector<double> buys(count);  // codes of its categories
  MCBinModel::ValueCoder(model.attributes[0]).Code({others.ages.data()}, count, ages.data());
  MCBinModel::ValueCoder(model.targets[0]).Code({others.buys.data()}, count, buys.data());

  MCBinModel::BinCounter counter(model, MCBinModel::SelectResults(model, "buys"));
  std::vector<const double*> columns;  // in the order that the counter wants
  for (const MCBinModel::BinCounter::Variable& variable : counter.GetVariables()) {
    columns.push_back(variable.isTarget ? buys.data() : ages.data());
  }
  counter.Add(columns.data(), nullptr, count);
  const MCBinModel::Recount recount{count, {}, counter.Finish()};
  MCBinModel::WriteEvaluationReport(model, recount, "later customers", Print);
}
// end evaluate

// begin write
void WriteForOthers(const MCBinModel::BinModel& model, const std::string& pagePath) {
  const std::vector<std::size_t> results = MCBinModel::SelectResults(model, "buys");
  std::cout << MCBinModel::ExportSql(model, results, {}, "ansi", "customers");
  std::ofstream(pagePath) << MCBinModel::MakeHtmlReport(model);
  MCBinModel::WriteTextReport(model, {}, Print);
}
// end write

}  // namespace

int main() try {
  const WorkDirectory directory;
  const std::string path = directory.Path() + "/bins.json";
  SaveModel(MakeModel(Customers(18), directory.Path()), path);
  const MCBinModel::BinModel model = MCBinModel::ReadBinFile(path);
  ShowBinsOf(model, {29.5, 45, 45.5});
  CompareWith(model, Customers(25));
  WriteForOthers(model, directory.Path() + "/bins.html");
  MCBinModel::WriteTextReport(Refine(model), {}, Print);
} catch (const MCBinModel::Refusal& refusal) {
  std::cerr << refusal.what() << '\n';
  return 1;
} catch (const std::exception& error) {
  std::cerr << error.what() << '\n';
  return 1;
}
