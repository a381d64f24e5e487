// The registry of component classes: finds a class by name, with its published properties. There is one
// registry per process, as in the run-time library of the IDE.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace rtl {

// A component class: its name and its published properties, events and inherited ones included.
class TClassInfo {
 public:
  TClassInfo(std::string name, std::vector<std::string> properties);
  const std::string& Name() const { return FName; }
  const std::vector<std::string>& Properties() const { return FProperties; }  // in the order given
  // Returns whether a property of that name, ignoring case, is published. Corresponds to GetPropInfo of the
  // run-time library.
  bool HasProperty(std::string_view name) const;

 private:
  std::string FName;
  std::vector<std::string> FProperties;
  std::vector<std::string> FSortedNames;  // lower-cased, for the search
};

// Registers a class. A class of that name that is already registered is replaced.
void RegisterClass(TClassInfo info);
// Returns the class of that name, ignoring case, or null. Valid until the name is registered again, or until
// UnregisterClasses.
const TClassInfo* GetClass(std::string_view name);
void UnregisterClasses();

}  // namespace rtl
