#include "algorithm/runningsplit.h"

#include <algorithm>

#include "algorithm/nearlog.h"

namespace MCBinning {

RunningSplit::RunningSplit(const std::vector<double>& totals) {
  for (std::size_t category = 0; category + 1 < totals.size(); ++category) {
    const double total = totals[category + 1];
    if (total == 0.0) continue;
    fTotal += total;
    fCategories.push_back(static_cast<std::uint8_t>(category));
    fTotals[category] = total;
    fTerms[category] = Term(category, 0.0);
  }
  AddTerms();
}

double RunningSplit::Term(std::size_t category, double left) const {
  return -NearXLogX(left) - NearXLogX(fTotals[category] - left);
}

void RunningSplit::AddTerms() {
  fTermSum = 0.0;
  for (const std::uint8_t category : fCategories) fTermSum += fTerms[category];
  fMoves = 0;
}

void RunningSplit::Place(const double* left) {
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
  return NearXLogX(fLeftWeight) + NearXLogX(fTotal - fLeftWeight) + fTermSum;
}

// On the way each h_k is not below its chord, and g not below its tangent at the middle of the way:
// both are linear in the weights that move. The answer is their sum where the way begins; for each
// category with a change that and by how much the sum rises until the change is made are told.
template <typename OnChange>
double RunningSplit::AdvanceTo(const double* left, const OnChange& onChange) {
  double moved = 0.0;
  for (const std::uint8_t category : fCategories) moved += left[category] - fLeft[category];
  if (moved == 0.0) return GetScore();
  const double middle = fLeftWeight + moved / 2.0;
  const double leftLog = NearLog(middle);
  const double rightLog = NearLog(fTotal - middle);
  const double slope = leftLog - rightLog;

  const double start =
      middle * leftLog + (fTotal - middle) * rightLog - slope * moved / 2.0 + fTermSum;
  for (const std::uint8_t category : fCategories) {
    const double change = left[category] - fLeft[category];
    if (change == 0.0) continue;
    const double term = Term(category, left[category]);
    onChange(category, change, term - fTerms[category] + slope * change);
    fLeft[category] = left[category];
    fTerms[category] = term;
  }
  fLeftWeight += moved;
  AddTerms();
  return start;
}

// The sum is least at one of each category's ends.
double RunningSplit::Advance(const double* left) {
  double leastRise = 0.0;
  const double start = AdvanceTo(left, [&](std::size_t /*category*/, double /*change*/,
                                           double rise) { leastRise += std::min(0.0, rise); });
  return start + leastRise;
}

double RunningSplit::AdvanceAlongLine(const double* left, double* slopes) {
  double offset = 0.0;
  const double start = AdvanceTo(left, [&](std::size_t category, double change, double rise) {
    slopes[category] = rise / change;
    offset += slopes[category] * fLeft[category];
  });
  return start - offset;
}

}  // namespace MCBinning
