#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace MCBinning {

// A split of an interval as it moves upwards through the rows, and its score: the entropy that
// it leaves, in nats, times the interval's weight W.
//
// With weight w of W on the left, and w_k of W_k in category k, the score is
//   g(w) + sum of h_k(w_k)    where g(w)   =  w log w + (W - w) log (W - w), which is convex,
//                                   h_k(w) = -w log w - (W_k - w) log (W_k - w), concave.
// A case that passes from right to left changes g and one h_k.
//
// Rounding: all terms and sums are at most W log W <= 37 W while W < 2^52, so an addition errs by
// less than 5e-15 W, and the logarithms, known to 2e-13, by less than 1e-12 W all together. With at
// most 256 terms and kMostMoves changes the score is known to 2e-11 W. Slopes of lines are below
// 74, so what a line of at most 8 categories adds up to errs by less than 1e-12 W more.
class RunningSplit {
 public:
  // `totals` has W_k for each category k at k + 1. Nothing is on the left yet.
  explicit RunningSplit(const std::vector<double>& totals);

  // What a split of an interval of this weight scores that leaves so many bits.
  static double ScoreOf(double entropy, double weight) { return entropy * kLogOf2 * weight; }

  // Scores further apart than this, in an interval of this weight, are in the order of the
  // entropies that the plain arithmetic gives (known to 1e-12).
  static double MarginOf(double weight) { return kMargin * weight; }

  // How many categories have weight in the interval.
  std::size_t GetCategoryCount() const { return fCategories.size(); }

  double GetMargin() const { return MarginOf(fTotal); }

  // Puts these weights, by category, on the left.
  void Place(const double* left);

  // Moves weight in a category from right to left.
  void Move(std::uint8_t category, double weight);

  double GetScore() const;

  // Puts more weights on the left, as Place() does, and returns a lower bound on the score of all
  // splits on the way there, in whatever order the weights move.
  double Advance(const double* left);

  // The same, where `slopes`, zeros on entry, holds a number for each category at the end: a split
  // on the way with weights w_k on the left scores the answer + the sum of slopes[k] w_k, or more.
  double AdvanceAlongLine(const double* left, double* slopes);

 private:
  static constexpr double kMargin = 1e-10;  // times W
  static constexpr double kLogOf2 = 0.69314718055994530942;
  static constexpr std::size_t kMostMoves = 2048;

  double Term(std::size_t category, double left) const;
  void AddTerms();
  template <typename OnChange>
  double AdvanceTo(const double* left, const OnChange& onChange);

  double fTotal = 0.0;
  std::vector<std::uint8_t> fCategories;  // those with weight in the interval
  std::array<double, 256> fTotals{};
  std::array<double, 256> fLeft{};
  std::array<double, 256> fTerms{};  // h_k
  double fLeftWeight = 0.0;
  double fTermSum = 0.0;
  std::size_t fMoves = 0;  // since the terms were added up
};

}  // namespace MCBinning
