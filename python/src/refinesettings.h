#pragma once

#include <nanobind/nanobind.h>

namespace MCBinPython {

// Adds to the module what refined bins are asked for with: the class RefineSettings and its enums.
void BindRefineSettings(nanobind::module_& module);

}  // namespace MCBinPython
