#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "metadata/pass/bintable.h"
#include "metadata/pass/cases.h"
#include "metadata/pass/counttable.h"
#include "metadata/pass/lazyorder.h"
#include "metadata/pass/loosecases.h"
#include "metadata/pass/tuplesort.h"
#include "metadata/pass/valuetally.h"

namespace MCBinning {

// Knows which cases of a data set are the loaded ones, of whatever kind they are: tuples, which are
// the data set's own, or what stands for them without weights. Keeps the latter, the buffers that
// cases are sorted in, and a bin table's room.
class CaseStore {
 public:
  // Cases that weigh 1 each, of supervised or of equal-frequency binning. The other kinds let go of
  // their memory.
  template <typename Case>
  std::vector<Case>& GetUnweighted() {
    std::apply([this](auto&... kinds) { (KeepOnly<Case>(kinds), ...); }, fUnweighted);
    if (!kIsPacked<Case>) fLoose = LooseCases();
    return std::get<std::vector<Case>>(fUnweighted);
  }

  // Those that are to be packed.
  LooseCases& GetLoose() { return fLoose; }

  // These are the loaded cases from now on; they stay where they are.
  template <typename Case>
  void SetLoaded(std::vector<Case>& cases) {
    fLoaded = &cases;
  }

  // There are none until then, and no counts of any.
  void SetNoneLoaded() {
    fLoaded = fTallied = &fNone;
    fCounts.DropIfLarge();
  }

  // Loads cases of few different values without sorting them: tuples that weigh as much as all
  // cases of a value and target stand for them. Returns how many different values there are, or
  // nothing, and nothing is loaded, when ValueTally does not take the cases. Requires that targets
  // lie below `targetCount`.
  template <typename Case>
  std::optional<unsigned int> LoadTallied(std::vector<Case>& cases, std::size_t targetCount) {
    if constexpr (kIsPacked<Case>) {
      if (fTally.Tally(fLoose, targetCount, fRuns)) return LoadRuns(cases, fRuns);
    } else if constexpr (kIsLazy<Case>) {
      if (fTally.Tally(cases, fEFRuns)) return LoadRuns(cases, fEFRuns);
    }
    return std::nullopt;
  }

  // Loads cases and sorts them. Packed ones are made of the loose ones. What LazyOrder is for is
  // sorted as far as it is looked at; the first and the last case are in their places. Returns how
  // many different values there are.
  template <typename Case>
  unsigned int LoadSorted(std::vector<Case>& cases) {
    const unsigned int distinctValues = Sort(cases);
    SetLoaded(cases);
    return distinctValues;
  }

  // Of the loaded cases, of which there is one at least.
  struct Range {
    double first;
    double last;
  };
  Range GetRange() const {
    return std::visit(
        [](const auto* cases) {
          return Range{Unpacked(cases->front()).value, Unpacked(cases->back()).value};
        },
        fLoaded);
  }

  // Of the loaded cases, if whoever sorted them has begun it before.
  CountTable& GetCountTable() { return fCounts; }

  // Of the attribute whose cases are loaded; see LoadedCases.
  void SetMissingWeights(std::vector<double> weights) { fMissingWeights = std::move(weights); }
  const std::vector<double>& GetMissingWeights() const { return fMissingWeights; }

  // Makes the loaded cases tuples, unless they are, in `tuples`, which takes room for `capacity`.
  template <typename Tuple>
  void MakeTuples(std::vector<Tuple>& tuples, std::size_t capacity) {
    std::visit([this](auto* cases) { SortTallied(*cases); }, fTallied);
    const auto make = [&](const auto* cases) {
      using Case = typename std::remove_pointer_t<decltype(cases)>::value_type;
      if constexpr (!std::is_same_v<Case, Tuple> && kHasTarget<Case> == kHasTarget<Tuple>) {
        if constexpr (kIsLazy<Case>) {
          if (!cases->empty()) std::get<SorterOf<Case>>(fSorters).SortAll();
        }
        tuples.reserve(capacity);
        tuples.resize(cases->size());
        std::transform(cases->begin(), cases->end(), tuples.begin(),
                       [](const Case& item) { return ToTuple(Unpacked(item)); });
      }
    };
    std::visit(make, fLoaded);
    SetNoneLoaded();
    SetLoaded(tuples);
  }

  // `visit` takes a vector of cases of any kind and returns the same type for all. It gets no cases
  // when those that are loaded are of the other kind of binning. Of equal-frequency binning it
  // takes the order of the cases besides, as far as they are not sorted, or null.
  template <typename Visit>
  auto VisitSupervised(const Visit& visit) const {
    return VisitKind<true>(visit);
  }
  template <typename Visit>
  auto VisitEqualFrequency(const Visit& visit) {
    return VisitKind<false>([&](const auto& cases) {
      using Case = typename std::remove_cvref_t<decltype(cases)>::value_type;
      if constexpr (kIsLazy<Case>) {
        // Without cases the order is that of others.
        LazyOrder<Case>& order = std::get<SorterOf<Case>>(fSorters);
        auto result = visit(cases, cases.empty() ? nullptr : &order);
        order.LetGo();
        return result;
      } else {
        return visit(cases, static_cast<LazyOrder<Case>*>(nullptr));
      }
    });
  }

  // Kept from attribute to attribute: to get and give back so much memory takes longer than to
  // fill it.
  DistinctBinTable& GetBinTable() { return fBinTable; }

  // Lets go of a table that takes much memory.
  void DropLargeBinTable() {
    const std::size_t kept = fBinTable.boundaries.capacity() + fBinTable.weights.capacity();
    if (kept > kMostKeptNumbers) fBinTable = DistinctBinTable();
  }

 private:
  // Those that only a few percentiles are asked of.
  template <typename Case>
  static constexpr bool kIsLazy = std::is_same_v<Case, UnweightedEFCase>;

  template <typename Case>
  using SorterOf = std::conditional_t<kIsLazy<Case>, LazyOrder<Case>, TupleSorter<Case>>;

  static constexpr std::size_t kMostKeptNumbers = std::size_t{4} << 20;

  template <typename Case>
  unsigned int Sort(std::vector<Case>& cases) {
    auto& sorter = std::get<SorterOf<Case>>(fSorters);
    const auto count = [&](const Case* sorted, std::size_t size) { fCounts.Add(sorted, size); };
    if constexpr (kIsLazy<Case>) {
      sorter.Begin(cases);
      return sorter.CountDistinct();
    } else if constexpr (kIsPacked<Case>) {
      sorter.Sort(fLoose, cases, count);
    } else {
      sorter.Sort(cases, count);
    }
    return static_cast<unsigned int>(fCounts.GetRowCount());
  }

  // The cases stay as they are, for whoever asks for them later.
  template <typename Case, typename Tuple>
  unsigned int LoadRuns(std::vector<Case>& cases, std::vector<Tuple>& runs) {
    fTallied = &cases;
    SetLoaded(runs);
    return CountDistinctSorted(runs.data(), runs.size());
  }

  // Loads the cases that runs stand for. Nobody wants to have them counted then.
  template <typename Case>
  void SortTallied(std::vector<Case>& cases) {
    if constexpr (kIsPacked<Case> || kIsLazy<Case>) {
      fCounts.BeginCounting();
      LoadSorted(cases);
    }
  }

  template <bool kIsSupervised, typename Visit>
  auto VisitKind(const Visit& visit) const {
    using None = std::conditional_t<kIsSupervised, UnweightedCase, UnweightedEFCase>;
    return std::visit(
        [&](const auto* cases) {
          using Case = typename std::remove_pointer_t<decltype(cases)>::value_type;
          if constexpr (kHasTarget<Case> == kIsSupervised) {
            return visit(*cases);
          } else {
            return visit(std::vector<None>());
          }
        },
        fLoaded);
  }

  template <typename Case, typename Other>
  void KeepOnly(std::vector<Other>& cases) {
    if constexpr (!std::is_same_v<Case, Other>) {
      std::vector<Other>().swap(cases);
      std::get<SorterOf<Other>>(fSorters) = SorterOf<Other>();
    }
  }

  template <typename... Cases>
  struct Kinds {
    using Vectors = std::tuple<std::vector<Cases>...>;
    using Loaded = std::variant<std::vector<Cases>*..., std::vector<BINDataTuple>*,
                                std::vector<EFBINDataTuple>*>;
    using Sorters =
        std::tuple<SorterOf<Cases>..., SorterOf<BINDataTuple>, SorterOf<EFBINDataTuple>>;
  };
  using Unweighted = Kinds<UnweightedCase, UnweightedEFCase, PackedCase<1>, PackedCase<5>>;

  Unweighted::Vectors fUnweighted;
  std::vector<UnweightedCase> fNone;  // stays empty
  Unweighted::Loaded fLoaded = &fNone;
  Unweighted::Loaded fTallied = &fNone;  // what runs stand for
  Unweighted::Sorters fSorters;
  LooseCases fLoose;
  ValueTally fTally;
  std::vector<BINDataTuple> fRuns;
  std::vector<EFBINDataTuple> fEFRuns;
  CountTable fCounts;
  DistinctBinTable fBinTable;
  std::vector<double> fMissingWeights;
};

}  // namespace MCBinning
