// JSON values as text.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace report {

// Returns the value as UTF-8, with `indent` blanks a level or on one line if it is -1, and a line end. Malformed UTF-8
// becomes U+FFFD.
inline std::string TextOf(const nlohmann::ordered_json& json, int indent) {
  return json.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace report
