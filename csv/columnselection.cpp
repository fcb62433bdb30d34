#include "csv/columnselection.h"

#include <fmt/format.h>

#include <map>
#include <numeric>
#include <set>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"

namespace MCBin {

using MCBinModel::RefusalCode;

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

[[noreturn]] void Refuse(RefusalCode code, const std::string& column, const std::string& problem) {
  throw MCBinModel::Refusal(code, {{}, column, {}},
                            fmt::format("column {} {}", MCBinModel::QuotedText(column), problem));
}

class Selection {
 public:
  Selection(const ColumnNames& names, const ColumnChoice& choice)
      : fNames(names), fChoice(choice), fKinds(names.GetCount(), KindRequest::kDetect) {
    for (const std::string& name : choice.categorical) SetKinds(name, KindRequest::kCategorical);
    for (const std::string& name : choice.continuous) SetKinds(name, KindRequest::kContinuous);
    for (const std::string& name : choice.exclude) {
      for (const std::size_t position : names.FindAll(name)) fExcluded.insert(position);
    }
    for (const MissingRequest& definition : choice.missing) SetMissing(definition);
  }

  std::vector<ColumnRequest> Select() {
    for (const std::string& name : fChoice.targets) AddNamed(name, ColumnUse::kTarget);
    if (fChoice.weight) AddNamed(*fChoice.weight, ColumnUse::kWeight);
    for (const std::string& name : fChoice.attributes) AddAttributes(name);
    if (fChoice.attributes.empty()) AddOthers();
    return std::move(fRequests);
  }

  // The columns that are described but that nothing uses.
  std::vector<ColumnNote> GetNotes() const {
    std::vector<ColumnNote> notes;
    for (const std::string& name : fChoice.exclude) {
      if (fNames.IsPattern(name)) continue;
      const auto known = fUses.find(fNames.Find(name));
      if (known == fUses.end()) continue;
      notes.push_back({ColumnNote::Kind::kOther, name,
                       fmt::format("column {} is {}, which cannot be excluded",
                                   MCBinModel::QuotedText(name), Describe(known->second))});
    }
    for (std::size_t position = 0; position < fKinds.size(); ++position) {
      const bool described =
          fKinds[position] != KindRequest::kDetect || fMissing.contains(position);
      if (!described || fUses.contains(position)) continue;
      const std::string& name = fNames.GetName(position);
      notes.push_back(
          {ColumnNote::Kind::kNotRead, name,
           fmt::format("column {} is described but not used", MCBinModel::QuotedText(name))});
    }
    return notes;
  }

 private:
  void SetKinds(const std::string& name, KindRequest kind) {
    for (const std::size_t position : fNames.FindAll(name)) {
      KindRequest& known = fKinds[position];
      if (known != KindRequest::kDetect && known != kind) {
        Refuse(RefusalCode::kTwoKinds, fNames.GetName(position),
               "is both categorical and continuous");
      }
      known = kind;
    }
  }

  void AddAttributes(const std::string& name) {
    if (fNames.IsPattern(name)) {
      AddUnused(fNames.FindAll(name));
      return;
    }
    if (fExcluded.contains(fNames.Find(name))) {
      Refuse(RefusalCode::kTwoUses, name, "cannot be an attribute and excluded");
    }
    AddNamed(name, ColumnUse::kAttribute);
  }

  void SetMissing(const MissingRequest& definition) {
    const bool isNew = fMissing.emplace(fNames.Find(definition.column), definition).second;
    if (!isNew) {
      Refuse(RefusalCode::kMissingTwice, definition.column, "has two lists of missing values");
    }
  }

  void AddNamed(const std::string& name, ColumnUse use) {
    const std::size_t position = fNames.Find(name);
    const auto [known, isNew] = fUses.emplace(position, use);
    if (!isNew && known->second == use) {
      Refuse(RefusalCode::kTwoUses, name, fmt::format("is named twice as {}", Describe(use)));
    }
    if (!isNew) {
      Refuse(RefusalCode::kTwoUses, name,
             fmt::format("cannot be {} and {}", Describe(known->second), Describe(use)));
    }
    const KindRequest kind = fKinds[position];
    if (use == ColumnUse::kTarget && kind == KindRequest::kContinuous) {
      Refuse(RefusalCode::kContinuousTarget, name, "is a target and cannot be continuous");
    }
    if (use == ColumnUse::kWeight && kind == KindRequest::kCategorical) {
      Refuse(RefusalCode::kCategoricalWeight, name, "is a weight and cannot be categorical");
    }
    Add(position, use, true);
  }

  void AddOthers() {
    std::vector<std::size_t> positions(fNames.GetCount());
    std::iota(positions.begin(), positions.end(), std::size_t{0});
    AddUnused(positions);
  }

  void AddUnused(const std::vector<std::size_t>& positions) {
    for (const std::size_t position : positions) {
      if (fNames.GetName(position).empty() || fExcluded.contains(position)) continue;
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
  const ColumnChoice& fChoice;
  std::vector<KindRequest> fKinds;                 // by position
  std::map<std::size_t, MissingRequest> fMissing;  // by position
  std::map<std::size_t, ColumnUse> fUses;          // by position
  std::set<std::size_t> fExcluded;                 // by position
  std::vector<ColumnRequest> fRequests;
};

}  // namespace

std::vector<ColumnRequest> SelectColumns(const ColumnNames& names, const ColumnChoice& choice,
                                         std::vector<ColumnNote>& notes) {
  Selection selection(names, choice);
  std::vector<ColumnRequest> requests = selection.Select();
  notes = selection.GetNotes();
  return requests;
}

}  // namespace MCBin
