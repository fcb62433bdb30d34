#include "bins.h"

extern "C" __attribute__((visibility("default"))) void Describe(std::string& text) {
  text = DescribeBins();
}
