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

// JPMML-Evaluator reads a margin without point and exponent into 32 bits, whatever is in it.
std::string XmlNumber(double value) {
  if (std::isinf(value)) return value > 0.0 ? "INF" : "-INF";
  const std::string text = FormatNumber(value);
  return text.find_first_of(".e") == std::string::npos ? text + ".0" : text;
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

struct PmmlType {
  const char* opType;
  const char* dataType;
};

PmmlType PmmlTypeOf(BinForm form) {
  switch (form) {
    case BinForm::kIndex:
      return {"ordinal", "integer"};
    case BinForm::kLabel:
      return {"categorical", "string"};
    case BinForm::kWeightOfEvidence:
      break;
  }
  return {"continuous", "double"};
}

// Nothing for a value that does not exist, such as the weight of evidence of an empty bin.
std::string XmlAttribute(const char* name, const BinValue& value) {
  if (std::holds_alternative<std::monostate>(value)) return "";
  return fmt::format(" {}=\"{}\"", name, XmlValue(value));
}

std::string DataField(const ExportColumn& column) {
  const VariableInfo& attribute = *column.attribute;
  const bool isText = attribute.kind == VariableKind::kStringCategorical;
  if (attribute.isTime) {
    return fmt::format("    <DataField name=\"{}\" optype=\"continuous\" dataType=\"dateTime\"/>\n",
                       PmmlText(attribute.name));
  }
  std::vector<std::string> missing;
  if (isText) {
    for (const std::string& text : attribute.missing.texts) missing.push_back(PmmlText(text));
  }
  for (const double number : column.missingNumbers) missing.push_back(XmlNumber(number));
  // Evaluators take NaN for a number above all others unless they are told.
  if (!isText) missing.emplace_back("NaN");

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
  if (bin > 0) interval += fmt::format(" leftMargin=\"{}\"", XmlNumber(cuts[bin - 1]));
  if (bin < cuts.size()) interval += fmt::format(" rightMargin=\"{}\"", XmlNumber(cuts[bin]));
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

std::string Compare(const char* function, const std::string& field, double value) {
  return fmt::format("<Apply function=\"{}\">{}<Constant dataType=\"double\">{}</Constant></Apply>",
                     function, field, XmlNumber(value));
}

std::string IsOutside(const std::string& field, const MissingDefinition::Interval& interval) {
  const std::string below = Compare("lessThan", field, interval.low);
  const std::string above = Compare("greaterThan", field, interval.high);
  if (interval.low == -DBL_MAX) return above;
  if (interval.high == DBL_MAX) return below;
  return "<Apply function=\"or\">" + below + above + "</Apply>";
}

// An `if` without a second choice leaves a value missing, and one whose condition is missing does
// so whatever its choices: so it is asked first whether there is a value.
std::string DiscretizeOutside(const ExportModel& model, const ExportColumn& column,
                              const MissingDefinition::Interval& interval) {
  const std::string field =
      fmt::format("<FieldRef field=\"{}\"/>", PmmlText(column.attribute->name));
  const bool hasValue = !std::holds_alternative<std::monostate>(column.missing);
  const std::string otherwise =
      hasValue ? fmt::format("      <Constant dataType=\"{}\">{}</Constant>\n",
                             PmmlTypeOf(model.form).dataType, XmlValue(column.missing))
               : "";
  return fmt::format(
      "      <Apply function=\"if\">\n"
      "      <Apply function=\"isNotMissing\">{0}</Apply>\n"
      "      <Apply function=\"if\">\n"
      "      {1}\n"
      "{2}{3}      </Apply>\n"
      "{3}      </Apply>\n",
      field, IsOutside(field, interval), Discretize(model, column), otherwise);
}

std::string BinOfNumber(const ExportModel& model, const ExportColumn& column) {
  const auto& interval = column.attribute->missing.interval;
  if (!interval) return Discretize(model, column);
  if (interval->low == -DBL_MAX && interval->high == DBL_MAX) {  // every value is missing
    return fmt::format("      <Discretize field=\"{}\"{}{}/>\n", PmmlText(column.attribute->name),
                       XmlAttribute("mapMissingTo", column.missing),
                       XmlAttribute("defaultValue", column.missing));
  }
  return DiscretizeOutside(model, column, *interval);
}

// No Interval holds times, but functions compare them.
class BinOfTime {
 public:
  BinOfTime(const ExportModel& model, const ExportColumn& column)
      : fModel(model),
        fColumn(column),
        fField(fmt::format("<FieldRef field=\"{}\"/>", PmmlText(column.attribute->name))) {}

  std::string Write() const {
    const std::string missing = Constant(fColumn.missing);
    std::string expression = Bins(0, fColumn.values.size());
    for (const std::string& isMissing : MissingConditions()) {
      expression = If(isMissing, missing, expression);
    }
    return "      " + If(Apply("isMissing", fField), missing, expression) + "\n";
  }

 private:
  static std::string Apply(const char* function, const std::string& arguments) {
    return fmt::format("<Apply function=\"{}\">{}</Apply>", function, arguments);
  }

  static std::string If(const std::string& condition, const std::string& yes,
                        const std::string& no) {
    return Apply("if", condition + yes + "\n      " + no);
  }

  std::string Constant(const BinValue& value) const {
    if (std::holds_alternative<std::monostate>(value)) return "<Constant missing=\"true\"/>";
    return fmt::format("<Constant dataType=\"{}\">{}</Constant>", PmmlTypeOf(fModel.form).dataType,
                       XmlValue(value));
  }

  // Of the column with a time; `up` as in FormatExportTime().
  std::string Compare(const char* function, double seconds, bool up) const {
    std::string time = FormatExportTime(*fColumn.attribute, seconds, up);
    std::replace(time.begin(), time.end(), ' ', 'T');
    return Apply(function,
                 fmt::format("{}<Constant dataType=\"dateTime\">{}</Constant>", fField, time));
  }

  // Far from 1970 several microseconds are one number.
  std::vector<std::string> MissingConditions() const {
    std::vector<std::string> conditions;
    const auto addRange = [&](double low, double high) {
      conditions.push_back(
          Apply("and", Compare("greaterOrEqual", low, true) + Compare("lessOrEqual", high, false)));
    };
    for (const double number : fColumn.missingNumbers) addRange(number, number);
    const auto& interval = fColumn.attribute->missing.interval;
    if (!interval) return conditions;
    if (interval->low == -DBL_MAX && interval->high == DBL_MAX) {
      conditions.push_back(Apply("isNotMissing", fField));
    } else if (interval->low == -DBL_MAX) {
      conditions.push_back(Compare("lessOrEqual", interval->high, false));
    } else if (interval->high == DBL_MAX) {
      conditions.push_back(Compare("greaterOrEqual", interval->low, true));
    } else {
      addRange(interval->low, interval->high);
    }
    return conditions;
  }

  // Of the bins from `first` to before `last`: in halves, as evaluators go down into each choice.
  std::string Bins(std::size_t first, std::size_t last) const {
    if (last - first == 1) return Constant(fColumn.values[first]);
    const std::size_t middle = first + (last - first) / 2;
    const bool closed = fModel.rightClosed;
    return If(
        Compare(closed ? "lessOrEqual" : "lessThan", (*fColumn.cutPoints)[middle - 1], !closed),
        Bins(first, middle), Bins(middle, last));
  }

  const ExportModel& fModel;
  const ExportColumn& fColumn;
  const std::string fField;
};

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

std::string ExpressionOf(const ExportModel& model, const ExportColumn& column) {
  if (column.attribute->IsCategorical()) return MapValues(column);
  return column.attribute->isTime ? BinOfTime(model, column).Write() : BinOfNumber(model, column);
}

std::string DerivedField(const ExportModel& model, const ExportColumn& column) {
  const PmmlType type = PmmlTypeOf(model.form);
  return fmt::format(
      "    <DerivedField name=\"{}\" optype=\"{}\" dataType=\"{}\">\n{}    </DerivedField>\n",
      PmmlText(column.name), type.opType, type.dataType, ExpressionOf(model, column));
}

}  // namespace

std::string ExportPmml(const BinModel& bins, const std::vector<std::size_t>& results,
                       const ExportOptions& options) {
  const ExportModel model = MakeExportModel(bins, results, options);
  std::string dataFields;
  std::string derivedFields;
  for (const ExportColumn& column : model.columns) {
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
