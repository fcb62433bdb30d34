#include "exceptions.h"

#include <mcbinmodel/model/refusal.h>
#include <nanobind/nanobind.h>

#include <array>
#include <cstddef>

namespace nb = nanobind;

namespace MCBinPython {

namespace {

// In the order of RefusalCode.
constexpr std::array kCodeNames = {
    "input",
    "unknown-column",
    "other-delimiter",
    "column-taken",
    "two-kinds",
    "two-uses",
    "missing-twice",
    "continuous-target",
    "categorical-weight",
    "text-among-numbers",
    "text-in-named-column",
    "text-in-continuous-column",
    "infinite-number",
    "too-many-categories",
    "bad-weight",
    "no-records",
    "cancelled",
    "temporary-file",
    "too-many-threads",
    "unreadable",
    "not-written",
    "temporary-files",
    "not-a-file",
    "wrong-file",
    "bad-bin-file",
    "unknown-version",
    "unwritable",
    "several-targets",
    "unknown-target",
    "no-targets",
    "no-results",
    "no-bins",
    "evidence-needs-target",
    "evidence-needs-two-classes",
    "missing-not-numeric",
    "missing-interval",
    "missing-not-whole",
    "missing-not-number",
    "column-exists",
    "table-name",
    "no-infinity",
    "unknown-class",
    "two-events",
    "unknown-attribute",
    "no-such-cut-point",
    "refine-needs-two-classes",
    "too-many-bins",
    "no-such-bins",
};
static_assert(kCodeNames.size() ==
              static_cast<std::size_t>(MCBinModel::RefusalCode::kNoSuchBins) + 1);

const char* NameOf(MCBinModel::RefusalCode code) {
  const auto index = static_cast<std::size_t>(code);
  return index < kCodeNames.size() ? kCodeNames[index] : kCodeNames.front();
}

nb::str Text(const std::string& text) {
  return nb::steal<nb::str>(
      PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "replace"));
}

}  // namespace

void RegisterExceptions() {
  nb::register_exception_translator([](const std::exception_ptr& thrown, void*) {
    try {
      std::rethrow_exception(thrown);
    } catch (const MCBinModel::Refusal& refusal) {
      const nb::object error =
          nb::module_::import_("mcbinning._errors")
              .attr("make_error")(NameOf(refusal.GetCode()), Text(refusal.GetPlace()),
                                  Text(refusal.GetSubject()), Text(refusal.GetDetail()),
                                  Text(refusal.what()));
      PyErr_SetObject(error.type().ptr(), error.ptr());
    }
  });
}

}  // namespace MCBinPython
