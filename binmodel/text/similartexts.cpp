#include "binmodel/text/similartexts.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <utility>

#include "binmodel/text/number.h"

namespace MCBinModel {

namespace {

// Letter case and blanks at the ends are no difference.
std::string Comparable(const std::string& text) {
  std::string comparable(TrimBlanks(text));
  for (char& c : comparable) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return comparable;
}

// Single-character changes that turn one text into the other (Levenshtein).
std::size_t EditDistance(const std::string& a, const std::string& b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::vector<std::string> FindSimilar(const std::vector<std::string>& texts,
                                     const std::string& wanted) {
  constexpr std::size_t kLongestCompared = 100;
  constexpr std::size_t kLettersForEachChange = 4;
  const std::string comparable = Comparable(wanted);
  std::size_t leastDistance = 1 + wanted.size() / kLettersForEachChange;
  std::vector<std::string> similar;
  for (const std::string& text : texts) {
    if (std::max(text.size(), wanted.size()) > kLongestCompared) continue;
    const std::size_t distance = EditDistance(Comparable(text), comparable);
    if (distance > leastDistance) continue;
    if (distance < leastDistance) similar.clear();
    leastDistance = distance;
    similar.push_back(text);
  }
  return similar;
}

}  // namespace MCBinModel
