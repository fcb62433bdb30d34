#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "common/guard.h"
#include "common/statuscodes.h"
#include "metadata/binaryrecorditerator.h"
#include "metadata/pass/casecollector.h"
#include "metadata/pass/cases.h"
#include "metadata/pass/descriptor.h"

class BINDataPreparator;

namespace MCBinning {

// What the cases of an attribute sum up to.
struct CaseSums {
  double weight = 0.0;                   // of the valid cases
  double weightWithMissing = 0.0;        // and of those whose target or value is missing
  unsigned int largestTarget = 0;        // among the valid cases
  std::vector<double> missingWeights{};  // of the cases that lack the value alone, by target
};

// Reads the files of an attribute, its target and the weight in step, and keeps the valid cases.
//
// The target's and the weight's stay open from attribute to attribute, and the target is read once
// for all of them. Errors are thrown: StatusError 120021 when a file is not the one that was
// written or does not hold a value per record, and std::bad_alloc.
class CaseReader {
 public:
  using FileIterator = std::unique_ptr<BinaryRecordIterator>;

  static constexpr int kNoFile = -1;

  // By file position.
  struct Companions {
    int target = kNoFile;
    int weight = kNoFile;
  };

  // All stay the caller's.
  CaseReader(const BINDataPreparator& preparator, FileIterator& target, FileIterator& weight)
      : fPreparator(preparator), fTarget(target), fWeight(weight) {}

  // Opens what is read with every attribute. What cannot be opened now is tried again with each.
  void Open(const Companions& companions);

  // The valid cases of the file at a position, in record order; none, and an error, when they
  // cannot be read, or nothing, when the kind of case cannot hold them. A kind of case that has a
  // target needs a target's file.
  // `Cases` is a vector of `Case`, or LooseCases for what is to be packed.
  template <typename Case, typename Cases>
  std::optional<CaseSums> Read(int file, const Companions& companions, Cases& cases) {
    try {
      return ReadInStep<Case>(file, companions, cases);
    } catch (...) {
      cases.clear();
      throw;
    }
  }

 private:
  static constexpr std::size_t kBlockCases = 8192;  // without weights; stay in the nearest caches

  template <typename Case, typename Cases>
  std::optional<CaseSums> ReadInStep(int file, const Companions& companions, Cases& cases) {
    const Descriptor values = OpenToRead(file);
    if (kHasTarget<Case>) ReadTargets(companions.target);
    const bool hasWeight = companions.weight != kNoFile;
    if (hasWeight) {
      RequireWhole(companions.weight, fWeight);
      fWeight->NewPass();
    }

    cases.resize(GetRecordCount());
    CaseCollector<Case> collector{CasePlaces<Case>(cases)};
    std::size_t count = 0;
    for (std::size_t casesRead = 0; casesRead < cases.size(); casesRead += count) {
      const std::size_t casesLeft = cases.size() - casesRead;
      BinaryRecordIterator::Block weights{nullptr, std::min(kBlockCases, casesLeft)};
      if (hasWeight) weights = fWeight->NextBlock();
      count = weights.count;
      // A file may have become shorter, or that of the weights longer, since it was looked at.
      if (count == 0 || count > casesLeft) throw StatusError(StatusCode::kTempFileFailed);
      const std::size_t byteCount = count * sizeof(double);
      if (values.Read(collector.GetRoom(count), byteCount) != byteCount)
        throw StatusError(StatusCode::kTempFileFailed);
      const std::uint16_t* const targets = kHasTarget<Case> ? fTargets.data() + casesRead : nullptr;
      collector.Add(targets, weights.values, count);
      if (!collector.HoldsAll()) {
        cases.clear();
        return std::nullopt;
      }
    }
    cases.resize(collector.GetCount());
    return CaseSums{collector.GetTotalWeight(), collector.GetTotalWeightWithMissing(),
                    collector.GetLargestTarget(), collector.GetMissingWeights()};
  }

  std::size_t GetRecordCount() const;
  bool IsWhole(int file, FileIterator& iterator) const;
  void RequireWhole(int file, FileIterator& iterator) const;
  Descriptor OpenToRead(int file) const;
  void UseTarget(int file);
  void ReadTargets(int file);

  const BINDataPreparator& fPreparator;
  FileIterator& fTarget;
  FileIterator& fWeight;
  int fTargetFile = kNoFile;
  // The target of every record, or kNoTarget, as the missing value was when it was read; empty
  // until then.
  std::vector<std::uint16_t> fTargets;
};

}  // namespace MCBinning
