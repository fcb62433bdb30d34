#pragma once

#include <string>
#include <vector>

namespace MCBin {

// Something the user should know about columns of the file. A front end adds the option that helps.
struct ColumnNote {
  enum class Kind {
    kNotRead,     // a column is described, but is not among those to be read; subject: its name
    kNotNumeric,  // columns were left out as they hold texts
    kStrayTexts,  // a column of numbers was left out for a few texts; they are in `texts`,
                  // unless they are cut
    kIdentifier,  // a column has another whole number in every record; subject: its name
    kOther,
  };

  Kind kind = Kind::kOther;
  std::string subject;
  std::string text;
  std::vector<std::string> texts = {};

  // Of kNotNumeric: the marks that make numbers of such texts; NUL: as they are.
  char decimal = '\0';
  char thousands = '\0';
};

}  // namespace MCBin
