#pragma once

#include <ostream>
#include <string>

#include "../common/export.h"

// An interval of strings, each end included or not. Strings compare byte by byte.
//
// A plain value for hosts; no user-missing definition uses it. Ends are taken as they come:
// ends in the wrong order, or equal ends that are not both included, make it empty. Making,
// copying and changing one may throw std::bad_alloc.
class MCBINNING_API BINStringInterval {
 public:
  // From "." to ".", both ends included.
  BINStringInterval();

  // From `left` to `right`, in any order.
  BINStringInterval(const std::string& left, bool leftIncluded, const std::string& right,
                    bool rightIncluded);

  // Stores the end; false when the interval is now empty.
  bool SetLeftEnd(const std::string& left, bool included);
  bool SetRightEnd(const std::string& right, bool included);

  // The ends, and whether each belongs to the interval.
  const std::string& GetLeftEnd() const { return fLeftEnd; }
  const std::string& GetRightEnd() const { return fRightEnd; }
  bool IsLeftEndIncluded() const { return fLeftEndIncluded; }
  bool IsRightEndIncluded() const { return fRightEndIncluded; }

  // Whether s lies in the interval, and whether no string can.
  bool Contains(const std::string& s) const;
  bool IsEmpty() const;

  // Equal ends, included alike.
  bool operator==(const BINStringInterval& other) const;

  // Writes a readable dump, in the stream's own formatting.
  std::ostream& Display(std::ostream& os) const;

 private:
  std::string fLeftEnd;
  bool fLeftEndIncluded;
  std::string fRightEnd;
  bool fRightEndIncluded;
};
