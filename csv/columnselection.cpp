#include "csv/columnselection.h"

#include <fmt/format.h>

#include <map>

#include "binmodel/text/displaytext.h"
#include "cli/options/usageerror.h"

namespace MCBin {

namespace {

const char* Describe(ColumnUse use) {
  switch (use) {
    case ColumnUse::kTarget:
      return "a target";
    case ColumnUse::kWeight:
      return "the weight";
    case ColumnUse::kAttribute:
      break;
  }
  return "an attribute";
}

class Selection {
 public:
  Selection(const ColumnNames& names, const RunOptions& options)
      : fNames(names), fOptions(options), fKinds(names.GetCount(), KindRequest::kDetect) {
    for (const std::string& name : options.categorical) SetKind(name, KindRequest::kCategorical);
    for (const std::string& name : options.continuous) SetKind(name, KindRequest::kContinuous);
    for (const MissingRequest& definition : options.missing) SetMissing(definition);
  }

  std::vector<ColumnRequest> Select() {
    for (const std::string& name : fOptions.targets) AddNamed(name, ColumnUse::kTarget);
    if (fOptions.weight) AddNamed(*fOptions.weight, ColumnUse::kWeight);
    for (const std::string& name : fOptions.attributes) AddNamed(name, ColumnUse::kAttribute);
    if (fOptions.attributes.empty()) AddOthers();
    return std::move(fRequests);
  }

  // The columns that an option described but nothing uses.
  std::vector<std::string> GetNotes() const {
    std::vector<std::string> notes;
    for (std::size_t position = 0; position < fKinds.size(); ++position) {
      const bool described =
          fKinds[position] != KindRequest::kDetect || fMissing.contains(position);
      if (!described || fUses.contains(position)) continue;
      notes.push_back(
          fmt::format("column {} is described by an option but not among "
                      "--attributes: it is not read",
                      MCBinModel::QuotedText(fNames.GetName(position))));
    }
    return notes;
  }

 private:
  void SetKind(const std::string& name, KindRequest kind) {
    KindRequest& known = fKinds[fNames.Find(name)];
    if (known != KindRequest::kDetect && known != kind) {
      throw UsageError(fmt::format("column {} is both --categorical and --continuous",
                                   MCBinModel::QuotedText(name)));
    }
    known = kind;
  }

  void SetMissing(const MissingRequest& definition) {
    const bool isNew = fMissing.emplace(fNames.Find(definition.column), definition).second;
    if (!isNew) {
      throw UsageError(fmt::format("--missing {}: given twice; join the values with commas",
                                   MCBinModel::QuotedText(definition.column)));
    }
  }

  void AddNamed(const std::string& name, ColumnUse use) {
    const std::size_t position = fNames.Find(name);
    const auto [known, isNew] = fUses.emplace(position, use);
    if (!isNew && known->second == use) {
      throw UsageError(fmt::format("column {} is named twice as {}", MCBinModel::QuotedText(name),
                                   Describe(use)));
    }
    if (!isNew) {
      throw UsageError(fmt::format("column {} cannot be {} and {}", MCBinModel::QuotedText(name),
                                   Describe(known->second), Describe(use)));
    }
    const KindRequest kind = fKinds[position];
    if (use == ColumnUse::kTarget && kind == KindRequest::kContinuous) {
      throw UsageError(fmt::format("column {}: a target has categories, it cannot be --continuous",
                                   MCBinModel::QuotedText(name)));
    }
    if (use == ColumnUse::kWeight && kind == KindRequest::kCategorical) {
      throw UsageError(fmt::format("column {}: a weight is a number, it cannot be --categorical",
                                   MCBinModel::QuotedText(name)));
    }
    Add(position, use, true);
  }

  void AddOthers() {
    for (std::size_t position = 0; position < fNames.GetCount(); ++position) {
      if (fNames.GetName(position).empty()) continue;
      if (!fUses.emplace(position, ColumnUse::kAttribute).second) continue;
      Add(position, ColumnUse::kAttribute, fKinds[position] != KindRequest::kDetect);
    }
  }

  void Add(std::size_t position, ColumnUse use, bool byName) {
    const auto missing = fMissing.find(position);
    fRequests.push_back({position, fNames.GetName(position), use, fKinds[position], byName,
                         missing == fMissing.end() ? MissingRequest{} : missing->second});
  }

  const ColumnNames& fNames;
  const RunOptions& fOptions;
  std::vector<KindRequest> fKinds;                 // by position
  std::map<std::size_t, MissingRequest> fMissing;  // by position
  std::map<std::size_t, ColumnUse> fUses;          // by position
  std::vector<ColumnRequest> fRequests;
};

}  // namespace

std::vector<ColumnRequest> SelectColumns(const ColumnNames& names, const RunOptions& options,
                                         std::vector<std::string>& notes) {
  Selection selection(names, options);
  std::vector<ColumnRequest> requests = selection.Select();
  notes = selection.GetNotes();
  return requests;
}

}  // namespace MCBin
