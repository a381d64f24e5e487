// The registry of component classes by name, with what each one publishes.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace rtl {

// A component class: its name and its published properties, events included, those of its base classes too.
class TClassInfo {
 public:
  TClassInfo(std::string name, std::vector<std::string> properties);
  const std::string& Name() const { return FName; }
  const std::vector<std::string>& Properties() const { return FProperties; }  // in the order given
  // GetPropInfo: whether a property of that name, ignoring case, is published.
  bool HasProperty(std::string_view name) const;

 private:
  std::string FName;
  std::vector<std::string> FProperties;
  std::vector<std::string> FSortedNames;  // lower-cased, for the look-up
};

// Enters a class; entering a name again replaces what it publishes.
void RegisterClass(TClassInfo info);
// The class of that name, ignoring case, or null. Valid until the name is entered again or UnregisterClasses.
const TClassInfo* GetClass(std::string_view name);
void UnregisterClasses();

}  // namespace rtl
