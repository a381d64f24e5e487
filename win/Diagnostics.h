// Lines for the user about what was passed over: on standard error, or wherever a sink is set.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace win {

// Takes one line, without its line end.
using TDiagnosticsSink = std::function<void(std::string_view line)>;

// Gives the line to the sink in force.
void Diagnose(std::string_view line);

// Puts `sink` in force; an empty one stands for standard error. The sink that was in force before.
TDiagnosticsSink SetDiagnosticsSink(TDiagnosticsSink sink);

// `name` fit for a terminal and a log: bytes that are not UTF-8, and control characters, as "\xNN".
[[nodiscard]] std::string PrintableName(std::string_view name);

}  // namespace win
