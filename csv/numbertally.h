#pragma once

#include <cstdint>
#include <string_view>

namespace MCBin {

// What is known of the numbers among the fields of a column. Neither their order nor who adds them
// matters.
class NumberTally {
 public:
  // A number and the text that it was read from.
  void Add(double value, std::string_view text) {
    if (IsSettled()) return;
    Look(value, text);
  }

  // The numbers of other fields.
  void Add(const NumberTally& other) {
    fAreWhole = fAreWhole && other.fAreWhole;
    fHaveDecimalPoint = fHaveDecimalPoint || other.fHaveDecimalPoint;
  }

  // No further number can change it, and no further whole one.
  bool IsSettled() const { return !fAreWhole && fHaveDecimalPoint; }

  // All of them are whole numbers.
  bool AreWhole() const { return fAreWhole; }

  // Some number would be none with a decimal comma.
  bool HaveDecimalPoint() const { return fHaveDecimalPoint; }

  // A field that is NaN or infinite.
  void AddNoNumber() { fAreWhole = false; }

 private:
  void Look(double value, std::string_view text);

  bool fAreWhole = true;
  bool fHaveDecimalPoint = false;
};

}  // namespace MCBin
