#pragma once

#include <string>

namespace MCBin {

// Something the user should know about columns of the file. A front end adds the option that helps.
struct ColumnNote {
  enum class Kind {
    kNotRead,     // a column is described, but is not among those to be read; subject: its name
    kNotNumeric,  // columns were left out as they hold texts
    kOther,
  };

  Kind kind = Kind::kOther;
  std::string subject;
  std::string text;
};

}  // namespace MCBin
