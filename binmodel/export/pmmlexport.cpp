#include <fmt/format.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "binmodel/export/exportmodel.h"
#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/escape.h"
#include "binmodel/text/number.h"

namespace MCBinModel {

namespace {

std::string PmmlText(const std::string& text) {
  const std::optional<std::string> escaped = XmlText(text);
  if (escaped) return *escaped;
  const bool control = std::any_of(text.begin(), text.end(), [](char c) {
    return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
  });
  throw Refusal(fmt::format("the text {} has a {} XML cannot hold", QuotedText(text),
                            control ? "control character, which" : "character that"));
}

std::string XmlNumber(double value) {
  if (std::isinf(value)) return value > 0.0 ? "INF" : "-INF";
  return FormatNumber(value);
}

std::string XmlValue(const BinValue& value) {
  struct Writer {
    std::string operator()(std::monostate) const { return ""; }
    std::string operator()(std::int64_t index) const { return std::to_string(index); }
    std::string operator()(double number) const { return XmlNumber(number); }
    std::string operator()(const std::string& text) const { return PmmlText(text); }
  };
  return std::visit(Writer{}, value);
}

// Nothing for a value that does not exist, such as the weight of evidence of an empty bin.
std::string XmlAttribute(const char* name, const BinValue& value) {
  if (std::holds_alternative<std::monostate>(value)) return "";
  return fmt::format(" {}=\"{}\"", name, XmlValue(value));
}

std::string DataField(const ExportColumn& column) {
  const VariableInfo& attribute = *column.attribute;
  const bool isText = attribute.kind == VariableKind::kStringCategorical;
  std::vector<std::string> missing;
  if (isText) {
    for (const std::string& text : attribute.missing.texts) missing.push_back(PmmlText(text));
  }
  for (const double number : column.missingNumbers) missing.push_back(XmlNumber(number));

  const std::string start = fmt::format(
      "    <DataField name=\"{}\" optype=\"{}\" dataType=\"{}\"", PmmlText(attribute.name),
      attribute.IsCategorical() ? "categorical" : "continuous", isText ? "string" : "double");
  if (missing.empty()) return start + "/>\n";
  std::string field = start + ">\n";
  for (const std::string& value : missing) {
    field += fmt::format("      <Value value=\"{}\" property=\"missing\"/>\n", value);
  }
  return field + "    </DataField>\n";
}

std::string Interval(const ExportColumn& column, std::size_t bin, bool rightClosed) {
  const std::vector<double>& cuts = *column.cutPoints;
  std::string interval =
      fmt::format("<Interval closure=\"{}\"", rightClosed ? "openClosed" : "closedOpen");
  if (bin > 0) interval += fmt::format(" leftMargin=\"{}\"", FormatNumber(cuts[bin - 1]));
  if (bin < cuts.size()) interval += fmt::format(" rightMargin=\"{}\"", FormatNumber(cuts[bin]));
  return interval + "/>";
}

// A bin without a value is left out: what falls into it has no value either.
std::string Discretize(const ExportModel& model, const ExportColumn& column) {
  const std::string start =
      fmt::format("      <Discretize field=\"{}\"{}", PmmlText(column.attribute->name),
                  XmlAttribute("mapMissingTo", column.missing));
  if (column.cutPoints->empty()) {
    return start + XmlAttribute("defaultValue", column.values.front()) + "/>\n";
  }
  std::string expression = start + ">\n";
  for (std::size_t bin = 0; bin < column.values.size(); ++bin) {
    const std::string value = XmlAttribute("binValue", column.values[bin]);
    if (value.empty()) continue;
    expression += fmt::format("        <DiscretizeBin{}>{}</DiscretizeBin>\n", value,
                              Interval(column, bin, model.rightClosed));
  }
  return expression + "      </Discretize>\n";
}

// A category that is not in the table counts as missing; one without a cell in it has no value.
std::string MapValues(const ExportColumn& column) {
  const VariableInfo& attribute = *column.attribute;
  std::string expression = fmt::format(
      "      <MapValues outputColumn=\"bin\"{}{}>\n"
      "        <FieldColumnPair field=\"{}\" column=\"category\"/>\n"
      "        <InlineTable>\n",
      XmlAttribute("mapMissingTo", column.missing), XmlAttribute("defaultValue", column.missing),
      PmmlText(attribute.name));
  for (const ExportColumn::CategoryBin& categories : column.categoryBins) {
    const BinValue& value = column.values[categories.bin];
    const bool hasValue = !std::holds_alternative<std::monostate>(value);
    const std::string cell = hasValue ? fmt::format("<bin>{}</bin>", XmlValue(value)) : "";
    for (const std::size_t code : categories.codes) {
      expression += fmt::format("          <row><category>{}</category>{}</row>\n",
                                PmmlText(attribute.GetLabel(code)), cell);
    }
  }
  return expression + "        </InlineTable>\n      </MapValues>\n";
}

const char* PmmlTypeOf(BinForm form) {
  switch (form) {
    case BinForm::kIndex:
      return "optype=\"ordinal\" dataType=\"integer\"";
    case BinForm::kLabel:
      return "optype=\"categorical\" dataType=\"string\"";
    case BinForm::kWeightOfEvidence:
      break;
  }
  return "optype=\"continuous\" dataType=\"double\"";
}

std::string DerivedField(const ExportModel& model, const ExportColumn& column) {
  const bool categorical = column.attribute->IsCategorical();
  return fmt::format("    <DerivedField name=\"{}\" {}>\n{}    </DerivedField>\n",
                     PmmlText(column.name), PmmlTypeOf(model.form),
                     categorical ? MapValues(column) : Discretize(model, column));
}

void NoteInterval(const VariableInfo& attribute, std::vector<std::string>& notes) {
  const auto& interval = attribute.missing.interval;
  if (!interval) return;
  const std::string low = interval->low == -DBL_MAX ? "" : FormatNumber(interval->low);
  const std::string high = interval->high == DBL_MAX ? "" : FormatNumber(interval->high);
  notes.push_back(fmt::format(
      "column {}: PMML cannot say that the interval {}:{} is missing; its values get a bin",
      QuotedText(attribute.name), low, high));
}

}  // namespace

std::string ExportPmml(const BinModel& bins, const std::vector<std::size_t>& results,
                       const ExportOptions& options, std::vector<std::string>& notes) {
  const ExportModel model = MakeExportModel(bins, results, options);
  std::string dataFields;
  std::string derivedFields;
  for (const ExportColumn& column : model.columns) {
    if (!column.attribute->IsCategorical()) NoteInterval(*column.attribute, notes);
    dataFields += DataField(column);
    derivedFields += DerivedField(model, column);
  }
  return fmt::format(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<PMML xmlns=\"http://www.dmg.org/PMML-4_4\" version=\"4.4\">\n"
      "  <Header>\n    <Application name=\"mcbin\"/>\n  </Header>\n"
      "  <DataDictionary numberOfFields=\"{}\">\n{}  </DataDictionary>\n"
      "  <TransformationDictionary>\n{}  </TransformationDictionary>\n"
      "</PMML>\n",
      model.columns.size(), dataFields, derivedFields);
}

}  // namespace MCBinModel
