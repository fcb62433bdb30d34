#include "binmodel/model/statustext.h"

namespace MCBinModel {

std::string DescribeStatus(const MCBinning::MCStatus& status) {
  if (status.IsOK()) return "ok";
  switch (status.GetErrorCode()) {
    case 1:
      return "the run was cancelled";
    case 3:
      return "not enough memory";
    case 120002:
      return "the cut points do not fit the data";
    case 120003:
      return "the variables cannot be binned together";
    case 120004:
      return "no record can be used";
    case 120005:
      return "the attribute is the weight or the target";
    case 120006:
      return "the target is not categorical";
    case 120008:
      return "no pair of attribute and target can be binned";
    case 120009:
      return "the number of bins is not set";
    case 120010:
      return "the target cannot be used";
    case 120011:
    case 120013:
      return "no such variable";
    case 120012:
      return "more categories than a variable can have";
    case 120014:
      return "a single distinct value";
    case 120015:
      return "no valid case";
    case 120016:
      return "the target has a single category";
    case 120017:
      return "no cut point separates the classes";
    case 120018:
      return "some results have a warning or an error";
    case 120019:
      return "no cut point divides the cases";
    case 120020:
      return "there are no results";
    case 120021:
      return "a temporary file could not be written or read back (is the disk full?)";
    default:
      return "unknown status";
  }
}

const char* DescribeSeverity(const MCBinning::MCStatus& status) {
  return status.IsOK() ? "ok" : status.IsWarning() ? "warning" : "error";
}

}  // namespace MCBinModel
