// The report as JSON. docs/report.md describes it field by field.
#pragma once

#include <string>

#include "report/Report.h"

namespace report {

std::string JsonReport(const TReport& report);

}  // namespace report
