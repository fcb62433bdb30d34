#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string_view>
#include <vector>

namespace MCBin {

// Whether the first texts of a column are all different, as identifiers are. Of more than kMost it
// looks at no other, so that it takes little memory.
class FirstTexts {
 public:
  static constexpr std::size_t kMost = 256;

  // Whether further texts can tell anything.
  bool WantsMore() const { return fAreDistinct && fHashes.size() < kMost; }

  void Add(std::string_view text) { AddHash(std::hash<std::string_view>()(text)); }

  // Those that follow.
  void Add(const FirstTexts& later) {
    for (const std::size_t hash : later.fHashes) AddHash(hash);
  }

  // So many that it means something, up to kMost, and no two of them equal.
  bool LookLikeIdentifiers() const {
    constexpr std::size_t kFewest = 100;
    return fAreDistinct && fHashes.size() >= kFewest;
  }

  // Up to kMost.
  std::size_t GetCount() const { return fHashes.size(); }

 private:
  void AddHash(std::size_t hash) {
    if (!WantsMore()) return;
    fAreDistinct = std::find(fHashes.begin(), fHashes.end(), hash) == fHashes.end();
    fHashes.push_back(hash);
  }

  bool fAreDistinct = true;
  std::vector<std::size_t> fHashes;
};

}  // namespace MCBin
