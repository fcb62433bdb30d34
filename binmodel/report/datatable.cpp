#include "binmodel/report/datatable.h"

#include <cmath>
#include <string_view>
#include <utility>

#include "binmodel/text/displaytext.h"
#include "binmodel/text/escape.h"
#include "binmodel/text/number.h"

namespace MCBinModel {

namespace {

using Field = DataTable::Field;

std::string NumberOf(double number) {
  if (!std::isinf(number)) return FormatNumber(number);
  return number > 0.0 ? "inf" : "-inf";
}

template <typename Value, typename Format>
std::string Join(const std::vector<Value>& values, const char* separator, const Format& format) {
  std::string text;
  for (const Value& value : values) text += (text.empty() ? "" : separator) + format(value);
  return text;
}

std::string PlainText(const Field& field) {
  if (const double* const number = std::get_if<double>(&field)) return NumberOf(*number);
  if (const auto* const text = std::get_if<std::string>(&field)) return PrintableText(*text);
  if (const auto* const list = std::get_if<std::vector<double>>(&field)) {
    return Join(*list, " ", NumberOf);
  }
  if (const auto* const texts = std::get_if<std::vector<std::string>>(&field)) {
    return Join(*texts, " ", PrintableText);
  }
  return {};
}

std::string JsonValue(const Field& field) {
  if (const double* const number = std::get_if<double>(&field)) {
    return std::isinf(*number) ? JsonText(NumberOf(*number)) : NumberOf(*number);
  }
  if (const auto* const text = std::get_if<std::string>(&field)) return JsonText(*text);
  if (const auto* const list = std::get_if<std::vector<double>>(&field)) {
    return "[" + Join(*list, ", ", NumberOf) + "]";
  }
  if (const auto* const texts = std::get_if<std::vector<std::string>>(&field)) {
    return "[" + Join(*texts, ", ", JsonText) + "]";
  }
  return "null";
}

}  // namespace

void DataTable::Set(const std::string& column, Field field) {
  const auto [place, isNew] = fColumnAt.try_emplace(column, fColumns.size());
  if (isNew) fColumns.push_back(column);
  Record& record = fRecords.back();
  if (record.size() <= place->second) record.resize(place->second + 1);
  record[place->second] = std::move(field);
}

void DataTable::Set(const std::string& column, const std::optional<double>& measure) {
  Set(column, measure ? Field(*measure) : Field());
}

void DataTable::Write(TableFormat format, const TextSink& write) const {
  if (format == TableFormat::kJson) {
    WriteJson(write);
  } else {
    WriteLines(format == TableFormat::kTsv ? '\t' : ',', write);
  }
}

void DataTable::WriteLines(char delimiter, const TextSink& write) const {
  const auto writeLine = [&](const auto& textOf) {
    std::string line;
    for (std::size_t column = 0; column < fColumns.size(); ++column) {
      if (column > 0) line += delimiter;
      AppendField(line, textOf(column), false, delimiter);
    }
    write(line + "\n");
  };
  writeLine([&](std::size_t column) { return PrintableText(fColumns[column]); });
  for (const Record& record : fRecords) {
    writeLine([&](std::size_t column) {
      return column < record.size() ? PlainText(record[column]) : std::string();
    });
  }
}

void DataTable::WriteJson(const TextSink& write) const {
  const char* separator = "[\n";
  for (const Record& record : fRecords) {
    std::string line = separator;
    for (std::size_t column = 0; column < fColumns.size(); ++column) {
      line += column == 0 ? "{" : ", ";
      line += JsonText(fColumns[column]) + ": ";
      line += JsonValue(column < record.size() ? record[column] : Field());
    }
    write(line + "}");
    separator = ",\n";
  }
  write(fRecords.empty() ? "[]\n" : "\n]\n");
}

}  // namespace MCBinModel
