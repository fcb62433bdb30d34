#pragma once

namespace MCBinPython {

// From now on a Refusal of the libraries reaches Python as the exception that mcbinning._errors
// makes of its code, place, subject, detail and reason.
void RegisterExceptions();

}  // namespace MCBinPython
