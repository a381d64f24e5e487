#include "desktop/RecentFiles.h"

#include <algorithm>

#include "MigWizard/run/RExpertRes.h"
#include "desktop/HostTexts.h"
#include "rtl/text/Registry.h"
#include "rtl/text/SysUtils.h"

namespace desktop {

namespace {

std::string Key(int index) {
  return "RecentProject" + std::to_string(index);
}

}  // namespace

TRecentFiles::TRecentFiles() {
  const rtl::TRegIniFile reg(mig::SRegistryRoot, rtl::KEY_READ_WRITE);
  for (int i = 0; i < kMost; ++i) {
    std::string name = reg.ReadString(kHostSection, Key(i), "");
    if (!name.empty()) FNames.push_back(std::move(name));
  }
}

void TRecentFiles::Add(std::string_view fileName) {
  const std::string name(fileName);  // a copy, because `fileName` may refer to an entry of the list
  Forget(name);
  FNames.insert(FNames.begin(), name);
  if (FNames.size() > kMost) FNames.pop_back();
  Store();
}

void TRecentFiles::Remove(std::string_view fileName) {
  Forget(std::string(fileName));
  Store();
}

void TRecentFiles::Forget(std::string_view fileName) {
  std::erase_if(FNames, [&](const std::string& name) { return rtl::SameText(name, fileName); });
}

void TRecentFiles::Store() const {
  rtl::TRegIniFile reg(mig::SRegistryRoot, rtl::KEY_READ_WRITE);
  for (int i = 0; i < kMost; ++i) {
    const size_t index = static_cast<size_t>(i);
    reg.WriteString(kHostSection, Key(i), index < FNames.size() ? FNames[index] : "");
  }
}

}  // namespace desktop
