#include "metadata/binnumericinterval.h"

#include <limits>

namespace {

constexpr double kPlusInfinity = std::numeric_limits<double>::max();
constexpr double kMinusInfinity = -kPlusInfinity;

}  // namespace

BINNumericInterval::BINNumericInterval() : BINNumericInterval(0.0, 0.0) {}

BINNumericInterval::BINNumericInterval(double left, double right)
    : fLeftEnd(left), fRightEnd(right) {}

BINNumericInterval::BINNumericInterval(double end, bool toMinusInfinity)
    : fLeftEnd(toMinusInfinity ? kMinusInfinity : end),
      fRightEnd(toMinusInfinity ? end : kPlusInfinity) {}

bool BINNumericInterval::SetLeftEnd(double left) {
  fLeftEnd = left;
  return fRightEnd >= fLeftEnd;
}

bool BINNumericInterval::SetRightEnd(double right) {
  fRightEnd = right;
  return fRightEnd >= fLeftEnd;
}

bool BINNumericInterval::IsLeftEndInfinite() const { return fLeftEnd == kMinusInfinity; }

bool BINNumericInterval::IsRightEndInfinite() const { return fRightEnd == kPlusInfinity; }

bool BINNumericInterval::operator==(const BINNumericInterval& other) const {
  return fLeftEnd == other.fLeftEnd && fRightEnd == other.fRightEnd;
}

std::ostream& BINNumericInterval::Display(std::ostream& os) const {
  os << "BINNumericInterval: ";
  if (fLeftEnd > kMinusInfinity) {
    os << "[ " << fLeftEnd << ", ";
  } else {
    os << "( -infinity, ";
  }
  if (fRightEnd < kPlusInfinity) {
    os << fRightEnd << " ]";
  } else {
    os << "infinity )";
  }
  return os << '\n';
}
