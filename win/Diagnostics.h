// Lines for the user about what was passed over, on standard error unless a sink is set.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace win {

// Takes one line, without its line end.
using TDiagnosticsSink = std::function<void(std::string_view line)>;

// Passes the line to the sink in force.
void Diagnose(std::string_view line);

// Puts `sink` in force; an empty one means standard error. Returns the sink that was in force before.
TDiagnosticsSink SetDiagnosticsSink(TDiagnosticsSink sink);

// Returns `name`, which may be any text, fit for a terminal and a log: malformed UTF-8, control characters,
// and the characters that reverse the direction of writing become "\xNN", byte by byte.
[[nodiscard]] std::string PrintableName(std::string_view name);

}  // namespace win
