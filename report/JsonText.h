// JSON values as text.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace report {

// Returns the value as UTF-8 with a line end, with `indent` blanks per level, or on one line if `indent` is
// -1. Malformed UTF-8 is replaced by U+FFFD.
inline std::string TextOf(const nlohmann::ordered_json& json, int indent) {
  return json.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace report
