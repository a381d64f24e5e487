// The summary of a run for people.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "report/Report.h"

namespace report {

// Returns the numbers of a run as labels and values, for people. A row with an empty label continues the one
// before it.
using TSummaryRows = std::vector<std::pair<std::string, std::string>>;
TSummaryRows SummaryRows(const TReport& report);
// Returns at most 15 lines for people. `reports` are the names of the written reports.
std::vector<std::string> SummaryLines(const TReport& report, const std::vector<std::string>& reports);

}  // namespace report
