// The class map of a migration: which class name becomes which. Filled once, looked up for every identifier
// of every unit, ignoring case.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "MigWizard/passes/WordSearch.h"
#include "rtl/text/StringList.h"

namespace mig {

class TClassMap {
 public:
  TClassMap() { FClassIndex.SetSorted(true); }

  // Appends `newClass` and makes `oldClass` lead to it. An old class that is there already keeps its new one.
  void AddClass(std::string_view oldClass, std::string_view newClass);

  // Finds any old class of the map in a text, also within a longer word.
  const TWordSearch& OldClasses() const { return FOldClasses; }

  // The new class of that name, or null. Valid for as long as the map.
  const std::string* Find(std::string_view oldClass) const;
  // Returns True if some class of the map becomes `name`, in any case of letters.
  bool IsNewClass(std::string_view name) const;

 private:
  rtl::TStringList FClassIndex;  // old names, sorted; the object is an index into FNewClasses
  rtl::TStringList FNewClasses;  // in the order of adding
  TWordSearch FOldClasses;
  // By first byte: bit n is set if an old name of n bytes begins so. It answers nearly every look-up.
  std::array<uint64_t, 256> FLengths{};
};

}  // namespace mig
