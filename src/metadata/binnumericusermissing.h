#pragma once

#include <string>
#include <vector>

#include "../common/export.h"
#include "binnumericinterval.h"
#include "ibinusermissing.h"

// User-missing numbers: discrete values with labels, and at most one closed interval.
class MCBINNING_API BINNumericUserMissing : public IBINUserMissing {
 public:
  // Contains nothing.
  BINNumericUserMissing();

  int GetDataType() const override;
  int GetNDiscreteValues() const override;
  bool HasInterval() const override;

  // Appends the value, also one that is there already; any number of values will do.
  // Leaves the object unchanged when memory runs out.
  void AddValue(double value, const std::string& label);

  // Sets the interval, or replaces the one set before.
  void SetInterval(const BINNumericInterval& interval);

  // In the order in which they were added.
  const std::vector<double>& GetDiscreteValues() const { return fDiscreteValues; }

  // Label i belongs to value i.
  const std::vector<std::string>& GetValueLabels() const { return fValueLabels; }

  // Stays this object's; null when no interval was set.
  const BINNumericInterval* GetInterval() const;

  // Whether x equals a discrete value or lies in the interval; never true of a NaN. Linear
  // in the number of discrete values.
  bool Contains(double x) const;

  IBINUserMissing* Clone() const override;

  // A NaN among the values equals nothing, so such an object does not even equal its copy.
  bool IsEqualTo(const IBINUserMissing* other) const override;

  std::ostream& Display(std::ostream& os) const override;

 private:
  std::vector<double> fDiscreteValues;
  std::vector<std::string> fValueLabels;
  BINNumericInterval fInterval;
  bool fHasInterval;
};
