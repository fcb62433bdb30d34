#include "csv/inputvariables.h"

#include <fmt/format.h>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/utf8.h"

namespace MCBin {

using MCBinModel::RefusalCode;

namespace {

class Builder {
 public:
  Builder(const std::string& fileName, IBINVariable::BINWRoundingOption rounding,
          std::vector<ColumnNote>& notes)
      : fFileName(fileName), fRounding(rounding), fNotes(notes) {}

  // `column` is that of the value file.
  void Add(const ColumnRequest& request, const ColumnScan& scan, std::size_t column) {
    switch (request.use) {
      case ColumnUse::kTarget:
        AddTarget(request, scan, column);
        break;
      case ColumnUse::kWeight:
        fVariables.weight = {{request.name, fRounding, request.missing.ForNumbers()}, column};
        break;
      case ColumnUse::kAttribute:
        AddAttribute(request, scan, column);
        break;
    }
  }

  MCBinModel::RunVariables Finish() {
    if (!fNotNumeric.empty()) {
      fNotes.push_back({ColumnNote::Kind::kNotNumeric,
                        {},
                        "left out because they are not numeric: " + fNotNumeric});
    }
    if (fVariables.attributes.empty()) {
      Refuse({}, fmt::format("no column can be binned{}{}",
                             fNotNumeric.empty() ? "" : "; not numeric: ", fNotNumeric));
    }
    return std::move(fVariables);
  }

 private:
  [[noreturn]] void Refuse(const std::string& column, const std::string& reason) const {
    throw MCBinModel::Refusal(RefusalCode::kInput, {fFileName, column, {}}, reason);
  }

  MCBinModel::Refusal::About About(const ColumnRequest& request,
                                   const ColumnScan::Sighting& sighting) const {
    return {fmt::format("{}:{}", fFileName, sighting.line), request.name, sighting.text};
  }

  void AddTarget(const ColumnRequest& request, const ColumnScan& scan, std::size_t column) {
    CheckCategories(request, scan, "a target has");
    if (scan.GetCategoryCount() < 2) {
      const bool none = scan.GetCategoryCount() == 0;
      Refuse(request.name,
             fmt::format("the target {} has {}; at least two different values are needed",
                         MCBinModel::QuotedText(request.name),
                         none ? "no value" : "a single value in all records"));
    }
    fVariables.targets.push_back(MakeCategorical(request, scan));
    fVariables.targetColumns.push_back(column);
  }

  void AddAttribute(const ColumnRequest& request, const ColumnScan& scan, std::size_t column) {
    const bool categorical = request.kind == KindRequest::kCategorical;
    if (!categorical && !scan.IsNumeric()) {
      LeaveOutText(request, *scan.GetFirstText());
      return;
    }
    if (categorical) {
      CheckCategories(request, scan, "a categorical column has");
      if (scan.GetCategoryCount() < 2) {
        fNotes.push_back({ColumnNote::Kind::kOther, request.name,
                          fmt::format("left out: column {} has fewer than two categories",
                                      MCBinModel::QuotedText(request.name))});
        return;
      }
    } else {
      CheckFinite(request, scan);
    }
    fVariables.attributes.push_back(categorical ? MakeCategorical(request, scan)
                                                : MakeContinuous(request));
    fVariables.attributeColumns.push_back(column);
  }

  void LeaveOutText(const ColumnRequest& request, const ColumnScan::Sighting& text) {
    if (request.byName) {
      throw MCBinModel::Refusal(
          RefusalCode::kTextInNamedColumn, About(request, text),
          fmt::format("{} in column {} is not a number", MCBinModel::QuotedText(text.text),
                      MCBinModel::QuotedText(request.name)));
    }
    constexpr int kMostNamed = 10;
    if (++fNotNumericCount > kMostNamed) {
      if (fNotNumericCount == kMostNamed + 1) fNotNumeric += " and more";
      return;
    }
    fNotNumeric += fmt::format("{}{} (line {}: {})", fNotNumeric.empty() ? "" : ", ",
                               MCBinModel::QuotedText(request.name), text.line,
                               MCBinModel::ElideText(text.text, 20));
  }

  void CheckFinite(const ColumnRequest& request, const ColumnScan& scan) const {
    const auto& infinite = scan.GetFirstInfinite();
    if (!infinite) return;
    throw MCBinModel::Refusal(
        RefusalCode::kInfiniteNumber, About(request, *infinite),
        fmt::format("the number {} in column {} is infinite or too large",
                    MCBinModel::QuotedText(infinite->text), MCBinModel::QuotedText(request.name)));
  }

  void CheckCategories(const ColumnRequest& request, const ColumnScan& scan,
                       const char* whatHas) const {
    if (scan.IsNumeric()) CheckFinite(request, scan);
    const auto& beyond = scan.GetFirstBeyond();
    if (!beyond) return;
    const bool tooLong = beyond->bytes > ColumnScan::kMaxCategoryBytes;
    const std::string limit =
        tooLong ? fmt::format("values of at most {} bytes, this one has {}",
                              ColumnScan::kMaxCategoryBytes, beyond->bytes)
                : fmt::format("at most {} different values, {} is one too many",
                              ColumnScan::kMaxCategories, MCBinModel::QuotedText(beyond->text));
    throw MCBinModel::Refusal(
        RefusalCode::kTooManyCategories, About(request, *beyond),
        fmt::format("column {}: {} {}; choose another column, or group its values first",
                    MCBinModel::QuotedText(request.name), whatHas, limit));
  }

  MCBinModel::VariableInfo MakeContinuous(const ColumnRequest& request) const {
    return {
        request.name, MCBinModel::VariableKind::kContinuous, request.missing.ForNumbers(), {}, {}};
  }

  MCBinModel::VariableInfo MakeCategorical(const ColumnRequest& request,
                                           const ColumnScan& scan) const {
    MCBinModel::VariableInfo info{
        request.name, MCBinModel::VariableKind::kStringCategorical, {}, {}, {}};
    if (scan.IsNumeric()) {
      info.kind = MCBinModel::VariableKind::kNumericCategorical;
      info.missing = request.missing.ForNumbers();
      for (int code = 0; code < scan.GetCategoryCount(); ++code) {
        info.numbers.push_back(scan.GetNumbers().Decode(code));
      }
    } else {
      info.missing = request.missing.ForTexts();
      for (int code = 0; code < scan.GetCategoryCount(); ++code) {
        info.texts.push_back(scan.GetTexts().Decode(code));
        CheckUtf8(request, info.texts.back());
      }
    }
    return info;
  }

  void CheckUtf8(const ColumnRequest& request, const std::string& text) const {
    if (MCBinModel::IsUtf8(text)) return;
    Refuse(request.name,
           fmt::format("the value {} in column {} is not UTF-8 text; convert the file first, for "
                       "example: iconv -f LATIN1 -t UTF-8",
                       MCBinModel::QuotedText(text), MCBinModel::QuotedText(request.name)));
  }

  const std::string& fFileName;
  const IBINVariable::BINWRoundingOption fRounding;
  std::vector<ColumnNote>& fNotes;
  MCBinModel::RunVariables fVariables;
  std::string fNotNumeric;
  int fNotNumericCount = 0;
};

}  // namespace

MCBinModel::RunVariables MakeInputVariables(const std::string& fileName,
                                            const std::vector<ColumnRequest>& requests,
                                            const InputScan& scan,
                                            IBINVariable::BINWRoundingOption rounding,
                                            std::vector<ColumnNote>& notes) {
  Builder builder(fileName, rounding, notes);
  for (std::size_t i = 0; i < requests.size(); ++i) {
    builder.Add(requests[i], scan.columns[i], scan.GetValueColumn(i));
  }
  return builder.Finish();
}

}  // namespace MCBin
