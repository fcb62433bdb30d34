#include "cli/terminal/refusaltext.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <vector>

#include "binmodel/text/displaytext.h"
#include "binmodel/text/escape.h"

namespace MCBin {

using MCBinModel::RefusalCode;

namespace {

// The texts as the value of an option that takes a list, as a shell takes it; nothing where there
// is none, or one that cannot be shown as it is.
std::string ListOption(const std::vector<std::string>& texts) {
  std::vector<std::string> items;
  for (const std::string& text : texts) {
    if (MCBinModel::PrintableText(text) != text) return {};
    const bool needsQuotes = text.empty() || text.find_first_of(",\"") != std::string::npos;
    items.push_back(needsQuotes ? MCBinModel::QuoteDoubled(text, '"') : text);
  }
  if (items.empty()) return {};
  std::string list = "'";
  for (const char c : fmt::format("{}", fmt::join(items, ","))) {
    list += c == '\'' ? std::string("'\\''") : std::string(1, c);
  }
  return list + "'";
}

std::string NotNumericAdvice(const ColumnNote& note) {
  if (note.decimal == '\0' && note.thousands == '\0') {
    return "; --categorical NAME bins a column by the codes of its categories";
  }
  if (note.thousands == '\0') return "; --decimal , reads decimal commas";
  return fmt::format("; {}--thousands {} reads them", note.decimal == '\0' ? "" : "--decimal , ",
                     note.thousands);
}

}  // namespace

std::string RefusalText(const MCBinModel::Refusal& refusal) {
  const std::string place = refusal.GetPlace().empty() ? "" : refusal.GetPlace() + ": ";
  const std::string subject = MCBinModel::QuotedText(refusal.GetSubject());
  const std::string& detail = refusal.GetDetail();
  switch (refusal.GetCode()) {
    case RefusalCode::kOtherDelimiter:
      return fmt::format("{}: is --delimiter '{}' missing?", refusal.what(),
                         MCBinModel::PrintableText(detail));
    case RefusalCode::kColumnTaken:
      return fmt::format("{}; choose another --suffix, or --replace the column {}", refusal.what(),
                         subject);
    case RefusalCode::kTwoKinds:
      return fmt::format("column {} is both --categorical and --continuous", subject);
    case RefusalCode::kMissingTwice:
      return fmt::format("--missing {}: given twice; join the values with commas", subject);
    case RefusalCode::kContinuousTarget:
      return fmt::format("column {}: a target has categories, it cannot be --continuous", subject);
    case RefusalCode::kCategoricalWeight:
      return fmt::format("column {}: a weight is a number, it cannot be --categorical", subject);
    case RefusalCode::kTextAmongNumbers:
      return refusal.what() + std::string("; use --na for texts that mean missing");
    case RefusalCode::kTextInNamedColumn:
      return refusal.what() +
             std::string(
                 "; use --na for texts that mean missing, or --categorical to bin the "
                 "column by the codes of its categories");
    case RefusalCode::kTextInContinuousColumn:
      return fmt::format(
          "{}{} in column {} is not a number, but the column is --continuous; texts that mean "
          "missing go to --na",
          place, MCBinModel::QuotedText(detail), subject);
    case RefusalCode::kInfiniteNumber:
      return fmt::format("{}; read it as missing with --na {}, or leave the column out",
                         refusal.what(), MCBinModel::ElideText(detail, 40));
    case RefusalCode::kTooManyThreads:
      return refusal.what() + std::string("; choose fewer with --jobs");
    case RefusalCode::kTemporaryFiles:
      return refusal.what() + std::string("; choose another directory with --temp-dir");
    case RefusalCode::kSeveralTargets:
      return place + "bins for several targets; choose one with --target: " + detail;
    case RefusalCode::kNoTargets:
      return place + "these bins have no target, leave --target out";
    case RefusalCode::kMissingNotNumeric:
      return fmt::format(
          "--missing {}: {} is not a number, but the column is numeric; texts that stand for a "
          "missing value go to --na",
          subject, MCBinModel::QuotedText(detail));
    case RefusalCode::kMissingInterval:
      return fmt::format(
          "--missing {}: an interval needs a numeric column; a text with a colon is written in "
          "double quotes",
          subject);
    case RefusalCode::kMissingNotWhole:
      return fmt::format(
          "--missing-as {}: the new columns hold whole numbers; give one, such as -1, or choose "
          "--as label",
          subject);
    case RefusalCode::kMissingNotNumber:
      return fmt::format("--missing-as {}: the new columns hold numbers; give one, such as 0",
                         subject);
    case RefusalCode::kColumnExists:
      return fmt::format("there is a column {} already; choose another --suffix", subject);
    case RefusalCode::kTableName:
      return fmt::format(
          "--table {}: write NAME or SCHEMA.NAME, a name with a dot or quotes in double quotes",
          subject);
    case RefusalCode::kNoInfinity:
      return fmt::format(
          "a weight of evidence is infinite, which --dialect {} cannot say; give a --woe-adjust "
          "such "
          "as 0.5, or choose --as index",
          refusal.GetSubject());
    default:
      return refusal.what();
  }
}

std::string NoteText(const ColumnNote& note) {
  switch (note.kind) {
    case ColumnNote::Kind::kNotRead:
      return fmt::format(
          "column {} is described by an option but not among --attributes: it is not read",
          MCBinModel::QuotedText(note.subject));
    case ColumnNote::Kind::kNotNumeric:
      return note.text + NotNumericAdvice(note);
    case ColumnNote::Kind::kStrayTexts: {
      const std::string list = ListOption(note.texts);
      if (list.empty()) return note.text;
      return fmt::format("{}; read {} as missing with --na {}", note.text,
                         note.texts.size() == 1 ? "it" : "them", list);
    }
    case ColumnNote::Kind::kIdentifier: {
      const std::string list = ListOption({note.subject});
      if (list.empty()) return note.text;
      return fmt::format("{}; --exclude {} leaves it out", note.text, list);
    }
    case ColumnNote::Kind::kOther:
      break;
  }
  return note.text;
}

bool IsUsageRefusal(RefusalCode code) {
  switch (code) {
    case RefusalCode::kTwoKinds:
    case RefusalCode::kTwoUses:
    case RefusalCode::kMissingTwice:
    case RefusalCode::kContinuousTarget:
    case RefusalCode::kCategoricalWeight:
    case RefusalCode::kMissingNotNumeric:
    case RefusalCode::kMissingInterval:
    case RefusalCode::kMissingNotWhole:
    case RefusalCode::kMissingNotNumber:
    case RefusalCode::kTableName:
      return true;
    default:
      return false;
  }
}

}  // namespace MCBin
