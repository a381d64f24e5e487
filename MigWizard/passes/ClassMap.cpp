#include "MigWizard/passes/ClassMap.h"

#include <algorithm>

#include "rtl/text/SysUtils.h"

namespace mig {
namespace {

// All longer names share the last bit.
uint64_t LengthBit(size_t length) {
  return uint64_t{1} << std::min<size_t>(length, 63);
}

}  // namespace

void TClassMap::AddClass(std::string_view oldClass, std::string_view newClass) {
  FClassIndex.AddObject(oldClass, FNewClasses.Add(newClass));
  FOldClasses.Add(oldClass);
  for (const std::string& spelling : {rtl::UpperCase(oldClass), rtl::LowerCase(oldClass)})
    FLengths[static_cast<uint8_t>(spelling[0])] |= LengthBit(spelling.size());
}

const std::string* TClassMap::Find(std::string_view oldClass) const {
  if (oldClass.empty() || (FLengths[static_cast<uint8_t>(oldClass[0])] & LengthBit(oldClass.size())) == 0)
    return nullptr;
  int index = 0;
  if (!FClassIndex.Find(oldClass, index)) return nullptr;
  return &FNewClasses[static_cast<int>(FClassIndex.Objects(index))];
}

bool TClassMap::IsNewClass(std::string_view name) const {
  constexpr char kCaseBit = 'a' - 'A';
  for (int i = 0; i < FNewClasses.Count(); ++i) {
    const std::string& each = FNewClasses[i];
    if (each.size() != name.size() || ((each[0] ^ name[0]) & ~kCaseBit) != 0) continue;
    if (rtl::SameText(each, name)) return true;
  }
  return false;
}

}  // namespace mig
