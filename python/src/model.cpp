#include "model.h"

#include <mcbinmodel/apply/valuecoder.h>
#include <mcbinmodel/export/binexport.h>
#include <mcbinmodel/file/binfile.h>
#include <mcbinmodel/measure/binstatistics.h>
#include <mcbinmodel/measure/evidence.h>
#include <mcbinmodel/model/binlookup.h>
#include <mcbinmodel/model/binmodel.h>
#include <mcbinmodel/model/refusal.h>
#include <mcbinmodel/model/resultselection.h>
#include <mcbinmodel/model/targetclasses.h>
#include <mcbinmodel/refine/binrefine.h>
#include <mcbinmodel/report/binreport.h>
#include <mcbinmodel/run/memorycolumns.h>
#include <mcbinning/metadata/describe.h>
#include <nanobind/stl/map.h>
#include <nanobind/stl/optional.h>
#include <nanobind/stl/pair.h>
#include <nanobind/stl/set.h>
#include <nanobind/stl/string.h>
#include <nanobind/stl/string_view.h>
#include <nanobind/stl/tuple.h>
#include <nanobind/stl/vector.h>

#include <cfloat>
#include <cstdint>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "apply.h"
#include "cells.h"
#include "fit.h"
#include "hostcalls.h"

namespace nb = nanobind;
using namespace nb::literals;

namespace MCBinPython {

namespace {

using MCBinModel::AttributeBins;
using MCBinModel::BinModel;
using MCBinModel::VariableInfo;
using Indexes = std::vector<std::size_t>;

const AttributeBins& ResultAt(const BinModel& model, std::size_t index) {
  if (index < model.results.size()) return model.results[index];
  throw nb::index_error("there is no such result");
}

nb::dict DescribeVariable(const VariableInfo& variable) {
  nb::list labels;
  for (std::size_t code = 0; code < variable.GetCategoryCount(); ++code) {
    labels.append(variable.GetLabel(code));
  }
  nb::dict described;
  described["name"] = variable.name;
  described["kind"] = MCBinModel::kKindNames[static_cast<std::size_t>(variable.kind)];
  described["categories"] = labels;
  described["is_time"] = variable.isTime;
  return described;
}

const VariableInfo& VariableAt(const std::vector<VariableInfo>& variables, std::size_t index) {
  if (index < variables.size()) return variables[index];
  throw nb::index_error("there is no such variable");
}

nb::list NamesOf(const std::vector<VariableInfo>& variables) {
  nb::list names;
  for (const VariableInfo& variable : variables) names.append(variable.name);
  return names;
}

nb::dict DescribeSettings(const BinModel& model) {
  const bool isSupervised = model.settings.algorithm == MCBinModel::Algorithm::kSupervised;
  nb::dict settings;
  settings["algorithm"] = isSupervised ? "supervised" : "equal-frequency";
  settings["closed"] = model.settings.rightClosed ? "right" : "left";
  if (isSupervised) {
    settings["prebin_above"] = model.settings.prebinAbove;
    settings["prebins"] = model.settings.prebins;
    settings["small_bins"] = model.settings.smallBins;
  } else {
    settings["bins"] = model.settings.bins;
  }
  if (!model.targets.empty()) settings["woe_adjust"] = model.settings.evidenceAdjustment;
  const MCBinModel::BinSource& source = model.source;
  settings["source"] = source.name;
  settings["records"] = source.recordCount;
  settings["dropped"] = source.dropped.GetTotal();
  settings["weight"] = source.weight ? nb::cast(source.weight->name) : nb::none();
  settings["refinements"] = model.refinements;
  return settings;
}

nb::dict DescribeSplit(const MCBinModel::BestSplit& split) {
  nb::dict described;
  described["cut_point"] = split.cutPoint;
  described["gain"] = split.gain;
  described["threshold"] = split.threshold;
  return described;
}

nb::dict DescribeResult(const BinModel& model, std::size_t index) {
  const AttributeBins& bins = ResultAt(model, index);
  nb::dict described;
  described["attribute"] = bins.attribute;
  described["target"] = bins.target;
  described["code"] = bins.status.GetErrorCode();
  described["severity"] = bins.status.IsOK() ? "ok" : bins.status.IsWarning() ? "warning" : "error";
  described["text"] = MCBinning::Describe(bins.status);
  described["cut_points"] = bins.cutPoints;
  described["bin_weights"] = bins.binWeights;
  described["class_weights"] = bins.classWeights;
  described["distinct_values"] = bins.distinctValues;
  described["valid_weight"] = bins.validWeight;
  described["weight_with_missing"] = bins.weightWithMissing;
  described["minimum"] = bins.minimum;
  described["maximum"] = bins.maximum;
  described["model_entropy"] = bins.modelEntropy;
  described["information_gain"] = bins.informationGain;
  described["best_split"] = nb::none();
  if (bins.bestSplit) described["best_split"] = DescribeSplit(*bins.bestSplit);
  described["missing"] = nb::none();
  if (bins.missing) {
    described["missing"] = nb::make_tuple(bins.missing->weight, bins.missing->classWeights);
  }
  return described;
}

std::vector<std::string> LabelsOf(const BinModel& model, std::size_t index) {
  const AttributeBins& bins = ResultAt(model, index);
  std::vector<std::string> labels;
  for (std::size_t bin = 0; bin <= bins.cutPoints.size(); ++bin) {
    labels.push_back(
        BinLabel(model.GetAttribute(bins), bins.cutPoints, bin, model.settings.rightClosed));
  }
  return labels;
}

// None without a target of two classes.
nb::object MeasureResult(const BinModel& model, std::size_t index,
                         std::optional<double> adjustment) {
  const AttributeBins& bins = ResultAt(model, index);
  const VariableInfo* const target = model.GetTarget(bins);
  if (target == nullptr || target->GetCategoryCount() != 2 || bins.classWeights.empty()) {
    return nb::none();
  }
  const std::size_t event = target->GetEvent();
  const MCBinModel::Evidence evidence =
      MeasureEvidence(bins, event, adjustment.value_or(model.settings.evidenceAdjustment));
  nb::dict measured;
  measured["event"] = target->GetLabel(event);
  measured["weights"] = evidence.weights;
  measured["values"] = evidence.values;
  measured["missing_weight"] = evidence.missingWeight;
  measured["missing_value"] = evidence.missingValue;
  measured["information_value"] = evidence.informationValue;
  return measured;
}

// A model of one result, and of no other variables than its own.
BinModel SelectOnly(const BinModel& model, std::size_t index) {
  AttributeBins bins = ResultAt(model, index);
  BinModel selected;
  selected.settings = model.settings;
  selected.source = model.source;
  selected.refinements = model.refinements;
  selected.attributes = {model.GetAttribute(bins)};
  if (const VariableInfo* const target = model.GetTarget(bins)) {
    selected.targets = {*target};
    bins.target = 0;
  }
  bins.attribute = 0;
  selected.results.push_back(std::move(bins));
  return selected;
}

BinModel RefineModel(BinModel model, const MCBinModel::RefineSettings& settings,
                     const std::vector<std::string>& events, std::optional<double> adjustment) {
  HostCalls host{nb::none()};
  const nb::gil_scoped_release unlocked;
  ChooseEvents(model.targets, events);
  if (adjustment) model.settings.evidenceAdjustment = *adjustment;
  return MCBinModel::RefineModel(model, settings, [&] { return host.QueryCancel(); });
}

std::string MakeHtml(const BinModel& model, std::optional<double> adjustment) {
  if (!adjustment || *adjustment == model.settings.evidenceAdjustment)
    return MCBinModel::MakeHtmlReport(model);
  BinModel adjusted = model;
  adjusted.settings.evidenceAdjustment = *adjustment;
  return MCBinModel::MakeHtmlReport(adjusted);
}

std::string MakeTextReport(const BinModel& model) {
  std::string report;
  MCBinModel::WriteTextReport(model, {}, [&](std::string_view text) { report += text; });
  return report;
}

MCBinModel::ExportOptions MakeExportOptions(Form form, const std::string& suffix,
                                            const std::optional<std::string>& missing) {
  MCBinModel::ExportOptions options;
  switch (form) {
    case Form::kIndex:
      options.form = MCBinModel::BinForm::kIndex;
      break;
    case Form::kEvidence:
      options.form = MCBinModel::BinForm::kWeightOfEvidence;
      break;
    default:
      options.form = MCBinModel::BinForm::kLabel;
  }
  options.suffix = suffix;
  options.missingText = missing;
  return options;
}

// Bins without counts, for cut points that the caller has. Categories of the target are those of
// the column.
BinModel FromCutPoints(const std::vector<std::string>& names,
                       const std::vector<std::vector<double>>& cutPoints,
                       const std::vector<bool>& areTimes, bool rightClosed, const Table* table,
                       std::optional<std::size_t> target) {
  BinModel model;
  model.settings.rightClosed = rightClosed;
  if (!target) model.settings.algorithm = MCBinModel::Algorithm::kEqualFrequency;
  std::size_t classCount = 0;
  if (target) {
    const Column& column = table->GetColumns().at(*target);
    CheckCategories(column);
    const Cells cells = ReadCells(column);
    VariableInfo variable;
    variable.name = column.name;
    MCBinModel::MemoryColumns columns(column.length);
    if (column.isText) {
      columns.AddCategories(
          MCBinModel::ColumnView<std::string_view>{cells.texts.data(), sizeof(std::string_view),
                                                   cells.validity.data()},
          variable);
    } else {
      columns.AddCategories(MCBinModel::ColumnView<double>{cells.numbers.data(), sizeof(double),
                                                           cells.validity.data()},
                            variable);
    }
    classCount = variable.GetCategoryCount();
    if (classCount < 2) throw MCBinModel::Refusal("the target needs at least two categories");
    model.targets.push_back(std::move(variable));
  }
  for (std::size_t i = 0; i < names.size(); ++i) {
    AttributeBins bins;
    bins.attribute = i;
    if (target) bins.target = 0;
    bins.cutPoints = cutPoints[i];
    bins.binWeights.assign(cutPoints[i].size() + 1, 0.0);
    if (target) bins.classWeights.assign(bins.binWeights.size(), std::vector(classCount, 0.0));
    model.results.push_back(std::move(bins));
    VariableInfo attribute;
    attribute.name = names[i];
    attribute.isTime = areTimes[i];
    model.attributes.push_back(std::move(attribute));
  }
  OrderClasses(model);
  return model;
}

VariableInfo MakeTime(const std::string& name) {
  VariableInfo variable;
  variable.name = name;
  variable.isTime = true;
  return variable;
}

// The seconds since 1970 of a date of that attribute. Throws Refusal for another text.
double ParseTime(const std::string& name, const std::string& text) {
  const VariableInfo variable = MakeTime(name);
  return MCBinModel::ValueCoder(variable).Code(std::string_view(text)).value;
}

std::string FormatTime(double seconds) { return MakeTime({}).FormatValue(seconds); }

MCBinModel::MissingDefinition MakeMissing(nb::handle described) {
  const auto parts = nb::cast<nb::tuple>(described);
  MCBinModel::MissingDefinition missing;
  missing.numbers = nb::cast<std::vector<double>>(parts[0]);
  missing.texts = nb::cast<std::vector<std::string>>(parts[1]);
  if (nb::handle(parts[2]).is_none()) return missing;
  const auto ends = nb::cast<std::pair<std::optional<double>, std::optional<double>>>(parts[2]);
  missing.interval = {ends.first.value_or(-DBL_MAX), ends.second.value_or(DBL_MAX)};
  return missing;
}

MCBinModel::BinSettings MakeSettings(const nb::dict& described) {
  MCBinModel::BinSettings settings;
  settings.rightClosed = nb::cast<bool>(described["right_closed"]);
  if (described.contains("bins")) {
    settings.algorithm = MCBinModel::Algorithm::kEqualFrequency;
    settings.bins = nb::cast<int>(described["bins"]);
  } else {
    settings.prebinAbove = nb::cast<int>(described["prebin_above"]);
    settings.prebins = nb::cast<int>(described["prebins"]);
    settings.smallBins = nb::cast<double>(described["small_bins"]);
  }
  settings.evidenceAdjustment = nb::cast<double>(described["woe_adjust"]);
  return settings;
}

std::pair<BinModel, Indexes> FitModel(const Table& table, const nb::dict& settings,
                                      Indexes attributes, Indexes targets,
                                      std::optional<std::size_t> weight,
                                      std::set<std::size_t> categorical, const nb::dict& missing,
                                      bool truncatesWeights, std::vector<std::string> events,
                                      int threads, const std::string& tempDir,
                                      const nb::object& progress) {
  FitColumns columns{std::move(attributes), std::move(targets), weight, std::move(categorical), {}};
  for (const auto& [index, described] : missing) {
    columns.missing.emplace(nb::cast<std::size_t>(index), MakeMissing(described));
  }
  return Fit(table, MakeSettings(settings), columns,
             {truncatesWeights, std::move(events), threads, tempDir, progress});
}

std::pair<Frame, std::map<std::string, std::size_t>> ApplyModel(
    const BinModel& model, const Indexes& results, const Table& table, const ColumnIndexes& columns,
    Form form, const std::string& suffix) {
  Applied applied = Apply(model, results, table, columns, form, suffix);
  return {std::move(applied.frame), std::move(applied.unknown)};
}

// (records, without weight: missing, zero, rounded to zero; the name of the weights or None)
using DescribedRecords = std::tuple<std::uint64_t, std::uint64_t, std::uint64_t, std::uint64_t,
                                    std::optional<std::string>>;

std::pair<BinModel, std::string> CountModelOn(const BinModel& model, const Indexes& results,
                                              const Table& table, const ColumnIndexes& columns,
                                              std::optional<std::size_t> weight,
                                              const std::optional<std::string>& name,
                                              const std::optional<DescribedRecords>& described) {
  std::optional<SummarisedRecords> summarised;
  if (described) {
    const auto& [count, missing, zero, roundedToZero, weightName] = *described;
    summarised = {count, {missing, zero, roundedToZero}, weightName};
  }
  std::string report;
  BinModel counted = CountOn(model, results, table, columns, weight, name.value_or(""), summarised,
                             name ? &report : nullptr);
  return {std::move(counted), std::move(report)};
}

}  // namespace

void BindModel(nb::module_& module) {
  using Unlocked = nb::call_guard<nb::gil_scoped_release>;
  nb::enum_<Form>(module, "Form")
      .value("INDEX", Form::kIndex)
      .value("LABEL", Form::kLabel)
      .value("WOE", Form::kEvidence)
      .value("INTERVAL", Form::kInterval);

  nb::class_<BinModel>(module, "Model")
      .def_static("parse", MCBinModel::ParseBinFile, "text"_a, "name"_a)
      .def_static("read", MCBinModel::ReadBinFile, "path"_a, Unlocked())
      .def("write", MCBinModel::WriteBinFile, Unlocked())
      .def_prop_rw(
          "source_name", [](const BinModel& model) { return model.source.name; },
          [](BinModel& model, std::string name) { model.source.name = std::move(name); })
      .def("settings", DescribeSettings)
      .def("attribute_names", [](const BinModel& model) { return NamesOf(model.attributes); })
      .def("target_names", [](const BinModel& model) { return NamesOf(model.targets); })
      .def(
          "attribute",
          [](const BinModel& model, std::size_t index) {
            return DescribeVariable(VariableAt(model.attributes, index));
          },
          "index"_a)
      .def(
          "target",
          [](const BinModel& model, std::size_t index) {
            return DescribeVariable(VariableAt(model.targets, index));
          },
          "index"_a)
      .def("__len__", [](const BinModel& model) { return model.results.size(); })
      .def("result", DescribeResult, "index"_a)
      .def(
          "variables_of",
          [](const BinModel& model, std::size_t index) {
            const AttributeBins& bins = ResultAt(model, index);
            return std::pair(bins.attribute, bins.target);
          },
          "index"_a)
      .def("labels", LabelsOf, "index"_a)
      .def("evidence", MeasureResult, "index"_a, "adjustment"_a.none())
      .def("only", SelectOnly, "index"_a)
      .def("refine", RefineModel, "settings"_a, "events"_a, "woe_adjust"_a.none())
      .def(
          "select",
          [](const BinModel& model, const std::optional<std::string>& target) {
            return SelectResults(model, target);
          },
          "target"_a.none())
      .def(
          "usable",
          [](const BinModel& model, const Indexes& results) {
            std::vector<std::string> notes;
            Indexes usable = LeaveOutFailedResults(model, results, notes);
            return std::pair(std::move(usable), std::move(notes));
          },
          "results"_a)
      .def("text", MakeTextReport, Unlocked())
      .def("html", MakeHtml, "adjustment"_a.none(), Unlocked())
      .def(
          "sql",
          [](const BinModel& model, const Indexes& results, Form form, const std::string& suffix,
             const std::optional<std::string>& missing, const std::string& dialect,
             const std::string& table) {
            return ExportSql(model, results, MakeExportOptions(form, suffix, missing), dialect,
                             table);
          },
          "results"_a, "form"_a, "suffix"_a, "missing"_a.none(), "dialect"_a, "table"_a)
      .def(
          "pmml",
          [](const BinModel& model, const Indexes& results, Form form, const std::string& suffix,
             const std::optional<std::string>& missing) {
            return ExportPmml(model, results, MakeExportOptions(form, suffix, missing));
          },
          "results"_a, "form"_a, "suffix"_a, "missing"_a.none())
      .def(
          "python",
          [](const BinModel& model, const Indexes& results, Form form, const std::string& suffix,
             const std::optional<std::string>& missing) {
            return ExportPython(model, results, MakeExportOptions(form, suffix, missing));
          },
          "results"_a, "form"_a, "suffix"_a, "missing"_a.none())
      .def("apply", ApplyModel, "results"_a, "table"_a, "columns"_a, "form"_a, "suffix"_a,
           Unlocked())
      .def("count_on", CountModelOn, "results"_a, "table"_a, "columns"_a, "weight"_a.none(),
           "name"_a.none(), "summarised"_a = nb::none(), Unlocked());

  module.def("fit", FitModel, "table"_a, "settings"_a, "attributes"_a, "targets"_a,
             "weight"_a.none(), "categorical"_a, "missing"_a, "truncates_weights"_a, "events"_a,
             "threads"_a, "temp_dir"_a, "progress"_a.none());
  module.def("from_cut_points", FromCutPoints, "names"_a, "cut_points"_a, "are_times"_a,
             "right_closed"_a, "table"_a.none(), "target"_a.none());
  module.def(
      "stability_index",
      [](const BinModel& model, std::size_t index, const BinModel& other, std::size_t otherIndex) {
        return StabilityOfBins(ResultAt(model, index), ResultAt(other, otherIndex));
      },
      "model"_a, "index"_a, "other"_a, "other_index"_a);
  module.def("parse_time", ParseTime, "name"_a, "text"_a);
  module.def("format_time", FormatTime, "seconds"_a);
  module.attr("largest_woe_adjust") = MCBinModel::kLargestEvidenceAdjustment;
  module.def("sql_dialects", MCBinModel::SqlDialectNames);
}

}  // namespace MCBinPython
