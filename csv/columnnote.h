#pragma once

#include <string>
#include <vector>

namespace MCBin {

// Something the user should know about columns of the file. A front end adds the option that helps.
struct ColumnNote {
  enum class Kind {
    kNotRead,     // a column is described, but is not among those to be read; subject: its name
    kNotNumeric,  // columns were left out as they hold texts; `texts`: a number with decimal comma
    kStrayTexts,  // a column of numbers was left out for a few texts; they are in `texts`
    kIdentifier,  // a column has another whole number in every record; subject: its name
    kOther,
  };

  Kind kind = Kind::kOther;
  std::string subject;
  std::string text;
  std::vector<std::string> texts = {};
};

}  // namespace MCBin
