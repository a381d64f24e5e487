// Fills in the wizard's dialog for a run over a single unit.
#pragma once

#include <string_view>

namespace rtl {
class TForm;
}
namespace host {
class TProject;
}

namespace desktop {

// Marks `unit`, a full Windows path, as the only one in the unit list of the wizard's dialog, which must not
// have been shown yet. `project` is the active project. Does nothing to other forms.
void ChooseUnit(rtl::TForm& form, const host::TProject& project, std::string_view unit);

}  // namespace desktop
