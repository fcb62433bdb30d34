#include "algorithm/runningsplit.h"

#include <algorithm>
#include <cmath>

#include "algorithm/binentropy.h"

namespace MCBinning {

RunningSplit::RunningSplit(const std::vector<double>& totals) : fTotal(totals[0]) {
  for (std::size_t category = 0; category + 1 < totals.size(); ++category) {
    const double total = totals[category + 1];
    if (total == 0.0) continue;
    fCategories.push_back(static_cast<std::uint8_t>(category));
    fTotals[category] = total;
    fTerms[category] = Term(category, 0.0);
  }
  AddTerms();
}

double RunningSplit::Term(std::size_t category, double left) const {
  return -XLogX(left) - XLogX(fTotals[category] - left);
}

void RunningSplit::AddTerms() {
  fTermSum = 0.0;
  for (const std::uint8_t category : fCategories) fTermSum += fTerms[category];
  fMoves = 0;
}

void RunningSplit::Place(const std::vector<double>& left) {
  fLeftWeight = 0.0;
  for (const std::uint8_t category : fCategories) {
    fLeftWeight += left[category];
    if (fLeft[category] == left[category]) continue;
    fLeft[category] = left[category];
    fTerms[category] = Term(category, left[category]);
  }
  AddTerms();
}

void RunningSplit::Move(std::uint8_t category, double weight) {
  fLeftWeight += weight;
  fLeft[category] += weight;
  const double term = Term(category, fLeft[category]);
  fTermSum += term - fTerms[category];
  fTerms[category] = term;
  if (++fMoves == kMostMoves) AddTerms();
}

double RunningSplit::GetScore() const {
  return XLogX(fLeftWeight) + XLogX(fTotal - fLeftWeight) + fTermSum;
}

// On the way each h_k is not below its chord, and g not below its tangent at the middle of the way.
// Both are linear in the weights that move, so the sum is least at one of each category's ends.
double RunningSplit::Advance(const std::vector<double>& left) {
  double moved = 0.0;
  for (const std::uint8_t category : fCategories) moved += left[category] - fLeft[category];
  if (moved == 0.0) return GetScore();
  const double middle = fLeftWeight + moved / 2.0;
  const double slope = std::log(middle) - std::log(fTotal - middle);

  double least = XLogX(middle) + XLogX(fTotal - middle) - slope * moved / 2.0 + fTermSum;
  for (const std::uint8_t category : fCategories) {
    const double change = left[category] - fLeft[category];
    if (change == 0.0) continue;
    const double term = Term(category, left[category]);
    least += std::min(0.0, term - fTerms[category] + slope * change);
    fLeft[category] = left[category];
    fTerms[category] = term;
  }
  fLeftWeight += moved;
  AddTerms();
  return least;
}

}  // namespace MCBinning
