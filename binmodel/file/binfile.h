#pragma once

#include <array>
#include <string>
#include <string_view>

#include "../model/binmodel.h"
#include "../model/binmodelexport.h"

namespace MCBinModel {

// What a bin file says it is, and the version of its format, which docs/bin-file.md describes.
constexpr const char* kBinFileFormat = "mcbin-bins";
constexpr int kBinFileVersion = 3;

// What it calls the kinds of variables, in the order of VariableKind.
constexpr std::array<const char*, 3> kKindNames = {"continuous", "numeric-categorical",
                                                   "string-categorical"};

// The unit of a variable of times.
constexpr const char* kTimeUnit = "seconds since 1970-01-01T00:00:00Z";

// The text of the bin file: one JSON object, of which every number reads back as the same double.
//
// The file has the lowest version that says it all: 3 for equal-frequency bins with targets,
// else 2. What a file says about statuses is their code and severity; details are not stored.
// Throws Refusal with the place in the file for a number that is not finite and a text that is not
// UTF-8. Requires a model whose lists fit together as those of a run do.
MCBINMODEL_API std::string WriteBinFile(const BinModel& model);

// Reads the text of a bin file of this version or an earlier one; `name` says in a refusal where it
// is from. A file of version 1 does not know the missing cases of its attributes.
//
// Cut points may have been edited by hand and are taken as they are. Throws Refusal, with
// the name, the place (a line, or a JSON pointer such as /results/0/cut_points) and the
// reason, for a text that is no bin file, is of a version this library does not know or was cut
// off, and for content that makes no sense: cut points that do not ascend, lists whose
// lengths or sums do not fit together, wrong types, negative weights, missing members, names
// that are unknown or not unique.
MCBINMODEL_API BinModel ParseBinFile(std::string_view text, const std::string& name);

// The same of a whole file, which is refused when it cannot be read, too.
MCBINMODEL_API BinModel ReadBinFile(const std::string& path);

}  // namespace MCBinModel
