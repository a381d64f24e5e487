// The report as one self-contained page: ReportPage.html with the findings inserted.
#pragma once

#include <string>

#include "report/Report.h"

namespace report {

std::string HtmlReport(const TReport& report);

}  // namespace report
