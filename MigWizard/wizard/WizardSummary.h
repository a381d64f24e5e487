// The summaries of the chosen options on the wizard's last page, for a run and for a restore.
#pragma once

#include <string>

namespace mig {

class TWizardForm;

std::string RestoreSummary(const TWizardForm& form);
std::string ReplaceSummary(const TWizardForm& form);

}  // namespace mig
