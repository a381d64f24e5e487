// The baseline: the findings of an earlier report.
#pragma once

#include <string_view>

#include "report/Report.h"

namespace report {

// Removes the findings that the report `json` of an earlier run contains. Ignores lines and columns; of
// findings that are equal otherwise, removes as many as `json` contains. Raises EReport if `json` is not a
// report.
void RemoveKnown(TReport& report, std::string_view json);

}  // namespace report
