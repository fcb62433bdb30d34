#include "refinesettings.h"

#include <mcbinmodel/refine/refinesettings.h>
#include <nanobind/stl/map.h>
#include <nanobind/stl/string.h>
#include <nanobind/stl/vector.h>

namespace nb = nanobind;

namespace MCBinPython {

using MCBinModel::RateTrend;
using MCBinModel::RefineObjective;
using MCBinModel::RefineSettings;

void BindRefineSettings(nb::module_& module) {
  nb::enum_<RefineObjective>(module, "RefineObjective")
      .value("GAIN", RefineObjective::kInformationGain)
      .value("IV", RefineObjective::kInformationValue);
  nb::enum_<RateTrend>(module, "RateTrend")
      .value("ANY", RateTrend::kAny)
      .value("INCREASING", RateTrend::kIncreasing)
      .value("DECREASING", RateTrend::kDecreasing)
      .value("EITHER", RateTrend::kEither)
      .value("PEAK", RateTrend::kPeak)
      .value("VALLEY", RateTrend::kValley);
  nb::class_<RefineSettings>(module, "RefineSettings")
      .def(nb::init<>())
      .def_rw("objective", &RefineSettings::objective)
      .def_rw("min_bins", &RefineSettings::minBins)
      .def_rw("max_bins", &RefineSettings::maxBins)
      .def_rw("min_share", &RefineSettings::minShare)
      .def_rw("min_weight", &RefineSettings::minWeight)
      .def_rw("min_event_weight", &RefineSettings::minEventWeight)
      .def_rw("min_nonevent_weight", &RefineSettings::minNoneventWeight)
      .def_rw("trend", &RefineSettings::trend)
      .def_rw("min_rate_difference", &RefineSettings::minRateDifference)
      .def_rw("attributes", &RefineSettings::attributes)
      .def_rw("breaks", &RefineSettings::breaks)
      .def_rw("keep", &RefineSettings::keep);
}

}  // namespace MCBinPython
