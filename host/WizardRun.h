// One use of the wizard without the host's window.
#pragma once

#include <string_view>

#include "MigWizard/expert/RunView.h"
#include "target/Catalogue.h"

namespace host {

// Opens the project, a full Windows path, unless it is empty. Shows the wizard and does the run that the user
// chooses, like a click on the wizard's menu item. Passes on exceptions; the warnings of the run are in
// `view` then.
void RunWizard(std::string_view project, const target::TCatalogue& catalogue, mig::TRunView& view);

}  // namespace host
