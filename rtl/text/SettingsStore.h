// The store in which TRegIniFile (rtl/text/Registry.h) keeps the settings of a root key. Each host has its
// own.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace rtl {

class ISettingsStore {
 public:
  virtual ~ISettingsStore() = default;
  // Returns a value, or nullopt if there is none or it cannot be read. Ignores the case of section and key.
  virtual std::optional<std::string> Read(std::string_view section, std::string_view key) const = 0;
  // Stores a value and adds the section if it is missing. Does nothing on failure.
  virtual void Write(std::string_view section, std::string_view key, std::string_view value) = 0;
};

// Opens the store of `rootKey`, "Software\Vendor". Never returns null. Defined in the host's folder.
std::unique_ptr<ISettingsStore> OpenSettingsStore(std::string_view rootKey);

}  // namespace rtl
