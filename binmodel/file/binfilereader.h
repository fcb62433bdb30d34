#pragma once

#include <string>
#include <string_view>

#include "binmodel/model/binmodel.h"

namespace MCBinModel {

// Reads a bin file; "-" is standard input. Every number is the double that was written.
//
// Cut points may have been edited by hand and are taken as they are. Throws Refusal, with
// the file, the place (a line, or a JSON pointer such as /results/0/cut_points) and the
// reason, for a file that is no bin file, is of a version this tool does not know or was cut
// off, and for content that makes no sense: cut points that do not ascend, lists whose
// lengths or sums do not fit together, wrong types, negative weights, missing members, names
// that are unknown or not unique.
//
// Of the options, those that a bin file holds are set; details of a status are not stored.
BinModel ReadBinFile(const std::string& path);

// The same for a text in memory; `name` is for messages.
BinModel ParseBinFile(std::string_view text, const std::string& name);

}  // namespace MCBinModel
