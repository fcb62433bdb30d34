#pragma once

#include <nanobind/nanobind.h>

namespace MCBinPython {

// Adds the class Model to the module: a BinModel with what the libraries do with it.
void BindModel(nanobind::module_& module);

}  // namespace MCBinPython
