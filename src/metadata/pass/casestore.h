#pragma once

#include <algorithm>
#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "metadata/pass/bintable.h"
#include "metadata/pass/cases.h"
#include "metadata/pass/tuplesort.h"

namespace MCBinning {

// Knows which cases of a data set are the loaded ones, of whatever kind they are: tuples, which are
// the data set's own, or what stands for them without weights. Keeps the latter, the buffers that
// cases are sorted in, and a bin table's room.
class CaseStore {
 public:
  // Supervised cases, or those of equal-frequency binning, that weigh 1 each.
  template <typename Case>
  std::vector<Case>& GetUnweighted() {
    return std::get<std::vector<Case>>(fUnweighted);
  }

  // These are the loaded cases from now on; they stay where they are.
  template <typename Case>
  void SetLoaded(std::vector<Case>& cases) {
    fLoaded = &cases;
  }

  template <typename Case>
  void Sort(std::vector<Case>& cases) {
    std::get<TupleSorter<Case>>(fSorters).Sort(cases);
  }

  // Of the attribute whose cases are loaded; see LoadedCases.
  void SetMissingWeights(std::vector<double> weights) { fMissingWeights = std::move(weights); }
  const std::vector<double>& GetMissingWeights() const { return fMissingWeights; }

  // Makes the loaded cases tuples, unless they are, in `tuples`, which takes room for `capacity`.
  template <typename Tuple>
  void MakeTuples(std::vector<Tuple>& tuples, std::size_t capacity) {
    using Case = std::conditional_t<kHasTarget<Tuple>, UnweightedCase, UnweightedEFCase>;
    if (!std::holds_alternative<std::vector<Case>*>(fLoaded)) return;
    const std::vector<Case>& cases = *std::get<std::vector<Case>*>(fLoaded);
    tuples.reserve(capacity);
    tuples.resize(cases.size());
    std::transform(cases.begin(), cases.end(), tuples.begin(),
                   [](const Case& item) { return ToTuple(item); });
    fLoaded = &tuples;
  }

  // `visit` takes a vector of cases of any kind and returns the same type for all. It gets no cases
  // when those that are loaded are of the other kind of binning.
  template <typename Visit>
  auto VisitSupervised(const Visit& visit) const {
    return VisitKind<true>(visit);
  }
  template <typename Visit>
  auto VisitEqualFrequency(const Visit& visit) const {
    return VisitKind<false>(visit);
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
  static constexpr std::size_t kMostKeptNumbers = std::size_t{4} << 20;

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

  std::tuple<std::vector<UnweightedCase>, std::vector<UnweightedEFCase>> fUnweighted;
  std::variant<std::vector<UnweightedCase>*, std::vector<UnweightedEFCase>*,
               std::vector<BINDataTuple>*, std::vector<EFBINDataTuple>*>
      fLoaded = &std::get<std::vector<UnweightedCase>>(fUnweighted);
  std::tuple<TupleSorter<UnweightedCase>, TupleSorter<UnweightedEFCase>, TupleSorter<BINDataTuple>,
             TupleSorter<EFBINDataTuple>>
      fSorters;
  DistinctBinTable fBinTable;
  std::vector<double> fMissingWeights;
};

}  // namespace MCBinning
