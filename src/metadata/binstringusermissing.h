#pragma once

#include <string>
#include <vector>

#include "../common/export.h"
#include "ibinusermissing.h"

// User-missing strings: discrete values with labels. Strings match byte by byte.
class MCBINNING_API BINStringUserMissing : public IBINUserMissing {
 public:
  int GetDataType() const override;
  int GetNDiscreteValues() const override;

  // Always false.
  bool HasInterval() const override;

  // Appends the value, also one that is there already; any number of values will do.
  // Leaves the object unchanged when memory runs out.
  void AddValue(const std::string& value, const std::string& label);

  // In the order in which they were added.
  const std::vector<std::string>& GetDiscreteValues() const { return fDiscreteValues; }

  // Label i belongs to value i.
  const std::vector<std::string>& GetValueLabels() const { return fValueLabels; }

  // Whether s is among the values. Linear in their number.
  bool Contains(const std::string& s) const;

  IBINUserMissing* Clone() const override;
  bool IsEqualTo(const IBINUserMissing* other) const override;
  std::ostream& Display(std::ostream& os) const override;

 private:
  std::vector<std::string> fDiscreteValues;
  std::vector<std::string> fValueLabels;
};
