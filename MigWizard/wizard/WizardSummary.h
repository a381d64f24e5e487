// The summaries on the wizard's last page: what a run or a restore with the chosen options will do.
#pragma once

#include <string>

namespace mig {

class TWizardForm;

std::string RestoreSummary(const TWizardForm& form);
std::string ReplaceSummary(const TWizardForm& form);

}  // namespace mig
