// The report as SARIF 2.1.0, the format of editors and code review services.
#pragma once

#include <string>

#include "report/Report.h"

namespace report {

std::string SarifReport(const TReport& report);

}  // namespace report
