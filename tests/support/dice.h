#pragma once

#include <cstdint>
#include <initializer_list>
#include <random>

// Random choices that a seed decides.
class Dice {
 public:
  explicit Dice(std::uint64_t seed) : fRandom(seed) {}

  // A whole number of 0 .. sides - 1.
  int Roll(int sides) { return static_cast<int>(fRandom() % static_cast<std::uint64_t>(sides)); }
  bool OneIn(int sides) { return Roll(sides) == 0; }
  double Share() { return static_cast<double>(fRandom() >> 11) * 0x1p-53; }

  template <class T>
  T OneOf(std::initializer_list<T> choices) {
    return choices.begin()[Roll(static_cast<int>(choices.size()))];
  }

 private:
  std::mt19937_64 fRandom;
};
