// Warnings for the user, for example about skipped files. They go to standard error unless a sink is set.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace win {

// Takes one line, without its line end.
using TDiagnosticsSink = std::function<void(std::string_view line)>;

// Passes the line to the current sink.
void Diagnose(std::string_view line);

// Sets the current sink; an empty one means standard error. Returns the previous sink.
TDiagnosticsSink SetDiagnosticsSink(TDiagnosticsSink sink);

// Returns `name`, which may be any text, in a form that is safe for a terminal and a log: malformed UTF-8,
// control characters, and characters that change the direction of writing become "\xNN", byte by byte.
[[nodiscard]] std::string PrintableName(std::string_view name);

}  // namespace win
