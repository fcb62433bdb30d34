#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace MCBinModel {

// The text of a JSON tree, ending with a line end.
//
// Objects and arrays of them take a line per entry; arrays of numbers and texts stay on one
// line. A number is the shortest text that reads back as the same double. Throws Refusal with
// the place for what JSON cannot hold: a number that is not finite, a text that is not UTF-8.
std::string PrintJson(const nlohmann::ordered_json& root);

}  // namespace MCBinModel
