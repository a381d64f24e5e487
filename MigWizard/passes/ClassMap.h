// The class map of a migration, from old to new class names. It is filled once and looked up for every
// identifier of every unit, ignoring case.
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

  // Maps `oldClass` to `newClass`. If `oldClass` is already in the map, it keeps its first new class.
  void AddClass(std::string_view oldClass, std::string_view newClass);

  // Returns the old classes, sorted.
  const rtl::TStringList& MappedClasses() const { return FClassIndex; }

  // Finds any old class of the map in a text, even within a longer word.
  const TWordSearch& OldClasses() const { return FOldClasses; }

  // Returns the new class of `oldClass`, or null. The pointer is valid as long as the map.
  const std::string* Find(std::string_view oldClass) const;
  // Returns True if the map replaces some class by `name`, ignoring case.
  bool IsNewClass(std::string_view name) const;

 private:
  rtl::TStringList FClassIndex;  // old names, sorted; the object is an index into FNewClasses
  rtl::TStringList FNewClasses;  // in the order of adding
  TWordSearch FOldClasses;
  // By first byte: bit n is set if an old name of n bytes begins with it. Rejects nearly every identifier.
  std::array<uint64_t, 256> FLengths{};
};

}  // namespace mig
