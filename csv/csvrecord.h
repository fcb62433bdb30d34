#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "csv/csvfield.h"

namespace MCBin {

// A record as a reader has come to it.
struct CsvRecord {
  std::string fileName;    // for messages
  std::uint64_t line = 0;  // on which it begins, from 1
  std::vector<CsvField> fields;

  // "name:line", for messages.
  std::string Where() const { return Where(line); }
  std::string Where(std::uint64_t anyLine) const {
    return fileName + ':' + std::to_string(anyLine);
  }
};

}  // namespace MCBin
