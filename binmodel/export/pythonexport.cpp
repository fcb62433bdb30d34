#include <fmt/format.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <string_view>
#include <vector>

#include "binmodel/export/exportmodel.h"
#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"
#include "binmodel/text/utf8.h"

namespace MCBinModel {

namespace {

// What would not be seen becomes an escape.
std::string PythonText(std::string_view text) {
  if (!IsUtf8(text)) throw Refusal(fmt::format("the text {} is not UTF-8", QuotedText(text)));
  std::string literal = "\"";
  while (!text.empty()) {
    const CodePoint next = TakeCodePoint(text);
    if (IsControl(next.value)) {
      literal += fmt::format("\\x{:02x}", next.value);
    } else if (IsHidden(next.value)) {
      literal += fmt::format("\\U{:08x}", next.value);
    } else {
      if (next.value == '"' || next.value == '\\') literal += '\\';
      literal += next.bytes;
    }
  }
  return literal + "\"";
}

std::string PythonNumber(double value) {
  if (std::isinf(value)) return value > 0.0 ? "np.inf" : "-np.inf";
  const std::string text = FormatNumber(value);
  return text.find_first_of(".e") == std::string::npos ? text + ".0" : text;
}

const char* NoValue(BinForm form) {
  switch (form) {
    case BinForm::kIndex:
      return "-1";
    case BinForm::kLabel:
      return "None";
    case BinForm::kWeightOfEvidence:
      break;
  }
  return "np.nan";
}

std::string PythonValue(const BinValue& value, BinForm form) {
  struct Writer {
    BinForm form;
    std::string operator()(std::monostate) const { return NoValue(form); }
    std::string operator()(std::int64_t index) const { return std::to_string(index); }
    std::string operator()(double number) const { return PythonNumber(number); }
    std::string operator()(const std::string& text) const { return PythonText(text); }
  };
  return std::visit(Writer{form}, value);
}

template <typename Values, typename Format>
std::string PythonList(const Values& values, Format format) {
  std::vector<std::string> literals;
  literals.reserve(values.size());
  for (const auto& value : values) literals.push_back(format(value));
  return fmt::format("[{}]", fmt::join(literals, ", "));
}

// By bin, and for a missing value at the end.
std::string Results(const ExportModel& model, const ExportColumn& column) {
  std::vector<BinValue> values = column.values;
  values.push_back(column.missing);
  return PythonList(values, [&](const BinValue& value) { return PythonValue(value, model.form); });
}

std::string MissingInterval(const VariableInfo& attribute) {
  const auto& interval = attribute.missing.interval;
  if (!interval) return "None";
  const std::string low = interval->low == -DBL_MAX ? "-np.inf" : PythonNumber(interval->low);
  const std::string high = interval->high == DBL_MAX ? "np.inf" : PythonNumber(interval->high);
  return fmt::format("({}, {})", low, high);
}

std::string ReadCall(const VariableInfo& attribute) {
  const bool isText = attribute.kind == VariableKind::kStringCategorical;
  return fmt::format("{}(columns[{}])",
                     isText ? "_texts" : (attribute.isTime ? "_times" : "_numbers"),
                     PythonText(attribute.name));
}

std::string IntervalCall(const ExportModel& model, const ExportColumn& column) {
  return fmt::format(
      "_interval_bins({}, {}, \"{}\", {}, {})", ReadCall(*column.attribute),
      PythonList(*column.cutPoints, PythonNumber), model.rightClosed ? "left" : "right",
      PythonList(column.missingNumbers, PythonNumber), MissingInterval(*column.attribute));
}

std::string CategoryCall(const ExportColumn& column) {
  const VariableInfo& attribute = *column.attribute;
  std::vector<std::string> entries;
  for (const ExportColumn::CategoryBin& categories : column.categoryBins) {
    for (const std::size_t code : categories.codes) {
      const std::string category = attribute.kind == VariableKind::kNumericCategorical
                                       ? PythonNumber(attribute.numbers[code])
                                       : PythonText(attribute.texts[code]);
      entries.push_back(fmt::format("{}: {}", category, categories.bin));
    }
  }
  return fmt::format("_category_bins({}, {{{}}}, {})", ReadCall(attribute),
                     fmt::join(entries, ", "), column.values.size());
}

const char* PythonTypeOf(BinForm form) {
  switch (form) {
    case BinForm::kIndex:
      return "np.int64";
    case BinForm::kLabel:
      return "object";
    case BinForm::kWeightOfEvidence:
      break;
  }
  return "np.float64";
}

// With the import that times need.
constexpr const char* kHead = R"("""Bins made by mcbin; needs NumPy only."""

{}import numpy as np


def assign_bins(columns):
    """Returns a dict of new columns; `columns` holds the old ones by name."""
    # Lists, arrays and columns of pandas, polars and Arrow will do, of whatever type. None, NaN,
    # masked and null values are missing.
    return {{
)";

// Arrow takes the categories of all chunks for those of the first one. Comparing pandas.NA gives
// pandas.NA, which is neither true nor false. searchsorted counts the cut points below a value, or
// with side="right" those up to it.
constexpr const char* kHelpers = R"(

_NUMBER_CHARACTERS = frozenset("+-.0123456789 \\taefintyAEFINTY")


def _array(values):
    if isinstance(values, np.ma.MaskedArray):
        return values.astype(object).filled(None)
    if hasattr(values, "combine_chunks"):
        values = values.combine_chunks()
    return np.asarray(values)


def _is_missing(value):
    try:
        return value is None or bool(value != value)
    except TypeError:
        return True


def _number(value):
    # float() alone would take "1_000" and digits of other scripts.
    text = value.decode("latin-1") if isinstance(value, bytes) else value
    if isinstance(text, str) and not _NUMBER_CHARACTERS.issuperset(text):
        raise ValueError(f"{value!r} is no number")
    return float(text)


def _numbers(values):
    """A column as doubles, NaN where there is no value; a text that is no number is an error."""
    array = _array(values)
    if array.dtype.kind in "biuf":
        return array.astype(np.float64)
    if array.dtype.kind in "mM":
        raise TypeError("a column of numbers is needed, not one of times")
    return np.array([np.nan if _is_missing(value) else _number(value) for value in array], np.float64)


def _texts(values):
    """A column of texts, None where there is no value."""
    texts = [None if _is_missing(value) else value for value in _array(values)]
    for text in texts:
        if text is not None and not isinstance(text, str):
            raise TypeError(f"a column of texts is needed, not one with {text!r}")
    return texts


def _interval_bins(numbers, cuts, side, missing_values, missing_interval):
    """The bin of each number; len(cuts) + 1 where it is missing."""
    missing = np.isnan(numbers) | np.isin(numbers, missing_values)
    if missing_interval is not None:
        missing |= (numbers >= missing_interval[0]) & (numbers <= missing_interval[1])
    return np.where(missing, len(cuts) + 1, np.searchsorted(cuts, numbers, side=side))


def _category_bins(values, bins, missing):
    """The bin of each category; `missing` where it is missing or unknown."""
    return np.array([bins.get(value, missing) for value in values], np.int64)
)";

// Of a module with columns of times. A second and the part of it are each exact, and so is their
// sum but for one rounding; datetime.fromisoformat() would take other texts, and cut decimals.
constexpr const char* kTimeHelpers = R"(

_TIME = re.compile(r"[ \t]*(\d{4}-\d\d-\d\d)(?:[T ](\d\d:\d\d)(:\d\d)?(?:(?<=:\d\d:\d\d)[.,](\d+))?"
                   r"(?:Z|([+-]\d\d)(?::?(\d\d))?)?)?[ \t]*", re.ASCII)


def _text_seconds(text):
    found = _TIME.fullmatch(text)
    if not found:
        raise ValueError(f"{text!r} is no date")
    day, minute, second, decimals, hours, minutes = found.groups("")
    time = datetime.datetime.fromisoformat(f"{day} {minute or '00:00'}{second or ':00'}")
    wholes = (time - datetime.datetime(1970, 1, 1)) // datetime.timedelta(seconds=1)
    if hours:
        ahead = datetime.time(int(hours[1:]), int(minutes or 0))
        wholes -= int(hours[0] + "1") * (ahead.hour * 3600 + ahead.minute * 60)
    return float(wholes + fractions.Fraction(int(decimals or 0), 10 ** len(decimals)))


def _seconds(value):
    if _is_missing(value):
        return np.nan
    if isinstance(value, str):
        return _text_seconds(value)
    if isinstance(value, datetime.datetime) and value.tzinfo is not None:
        value = value.astimezone(datetime.timezone.utc).replace(tzinfo=None)
    return _times(np.array([value], "datetime64[us]"))[0]


def _times(values):
    """Dates and times, also as ISO 8601 texts, as seconds since 1970 (UTC); NaN where there is none."""
    array = _array(values)
    if array.dtype.kind != "M":
        return np.array([_seconds(value) for value in array], np.float64)
    wholes = array.astype("datetime64[s]")
    parts = (array - wholes) / np.timedelta64(1, "s")
    return np.where(np.isnat(array), np.nan, wholes.astype(np.int64) + parts)
)";

}  // namespace

std::string ExportPython(const BinModel& bins, const std::vector<std::size_t>& results,
                         const ExportOptions& options) {
  const ExportModel model = MakeExportModel(bins, results, options);
  const bool hasTimes = std::any_of(model.columns.begin(), model.columns.end(),
                                    [](const auto& column) { return column.attribute->isTime; });
  std::string module =
      fmt::format(kHead, hasTimes ? "import datetime\nimport fractions\nimport re\n\n" : "");
  for (const ExportColumn& column : model.columns) {
    const bool categorical = column.attribute->IsCategorical();
    module += fmt::format("        {}: np.array({}, dtype={})[\n            {}],\n",
                          PythonText(column.name), Results(model, column), PythonTypeOf(model.form),
                          categorical ? CategoryCall(column) : IntervalCall(model, column));
  }
  module += "    }\n";
  module += kHelpers;
  if (hasTimes) module += kTimeHelpers;
  return module;
}

}  // namespace MCBinModel
