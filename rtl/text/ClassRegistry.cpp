#include "rtl/text/ClassRegistry.h"

#include <algorithm>
#include <map>

#include "rtl/text/SysUtils.h"

namespace rtl {
namespace {

// By lower-cased name.
std::map<std::string, TClassInfo, std::less<>>& Registry() {
  static std::map<std::string, TClassInfo, std::less<>> classes;
  return classes;
}

}  // namespace

TClassInfo::TClassInfo(std::string name, std::vector<std::string> properties)
    : FName(std::move(name)), FProperties(std::move(properties)) {
  FSortedNames.reserve(FProperties.size());
  for (const std::string& property : FProperties) FSortedNames.push_back(LowerCase(property));
  std::sort(FSortedNames.begin(), FSortedNames.end());
}

bool TClassInfo::HasProperty(std::string_view name) const {
  return std::binary_search(FSortedNames.begin(), FSortedNames.end(), LowerCase(name));
}

void RegisterClass(TClassInfo info) {
  std::string key = LowerCase(info.Name());
  Registry().insert_or_assign(std::move(key), std::move(info));
}

const TClassInfo* GetClass(std::string_view name) {
  const auto found = Registry().find(LowerCase(name));
  return found == Registry().end() ? nullptr : &found->second;
}

void UnregisterClasses() {
  Registry().clear();
}

}  // namespace rtl
