#include "desktop/UnitChoice.h"

#include <string>
#include <vector>

#include "host/Project.h"
#include "rtl/forms/Controls.h"
#include "rtl/forms/Forms.h"
#include "rtl/text/SysUtils.h"

namespace desktop {

void ChooseUnit(rtl::TForm& form, const host::TProject& project, std::string_view unit) {
  auto* const list = dynamic_cast<rtl::TCheckListBox*>(form.FindControl("lbModules"));
  if (list == nullptr || list->Count() > 0) return;
  std::vector<std::string> names;
  int chosen = -1;
  for (const host::TFileReference& one : project.Units()) {
    if (!rtl::SameText(rtl::ExtractFileExt(one.Name), ".pas")) continue;
    if (rtl::SameText(one.Name, unit)) chosen = static_cast<int>(names.size());
    names.push_back(rtl::ExtractFileName(one.Name));
  }
  if (chosen < 0) return;
  list->SetEntries(names);
  list->SetChecked(chosen, true);
}

}  // namespace desktop
