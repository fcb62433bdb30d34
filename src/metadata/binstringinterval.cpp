#include "metadata/binstringinterval.h"

BINStringInterval::BINStringInterval() : BINStringInterval(".", true, ".", true) {}

BINStringInterval::BINStringInterval(const std::string& left, bool leftIncluded,
                                     const std::string& right, bool rightIncluded)
    : fLeftEnd(left),
      fLeftEndIncluded(leftIncluded),
      fRightEnd(right),
      fRightEndIncluded(rightIncluded) {}

bool BINStringInterval::SetLeftEnd(const std::string& left, bool included) {
  fLeftEnd = left;
  fLeftEndIncluded = included;
  return !IsEmpty();
}

bool BINStringInterval::SetRightEnd(const std::string& right, bool included) {
  fRightEnd = right;
  fRightEndIncluded = included;
  return !IsEmpty();
}

bool BINStringInterval::Contains(const std::string& s) const {
  const int toLeft = s.compare(fLeftEnd);
  const int toRight = s.compare(fRightEnd);
  return (toLeft > 0 || (toLeft == 0 && fLeftEndIncluded)) &&
         (toRight < 0 || (toRight == 0 && fRightEndIncluded));
}

bool BINStringInterval::IsEmpty() const {
  const int order = fLeftEnd.compare(fRightEnd);
  return order > 0 || (order == 0 && !(fLeftEndIncluded && fRightEndIncluded));
}

bool BINStringInterval::operator==(const BINStringInterval& other) const {
  return fLeftEnd == other.fLeftEnd && fLeftEndIncluded == other.fLeftEndIncluded &&
         fRightEnd == other.fRightEnd && fRightEndIncluded == other.fRightEndIncluded;
}

std::ostream& BINStringInterval::Display(std::ostream& os) const {
  return os << "BINStringInterval: " << (fLeftEndIncluded ? "[ " : "( ") << fLeftEnd << ", "
            << fRightEnd << (fRightEndIncluded ? " ]" : " )") << '\n';
}
