// TRegIniFile: the user's settings, by section and key, below a root key such as "Software\Vendor".
//
// On Windows the store is the registry, below HKEY_CURRENT_USER. Elsewhere each root key has one text file,
// `Vendor/registry.ini` below $XDG_CONFIG_HOME or ~/.config: `[section]` and `key=value` lines in UTF-8,
// with control characters and backslashes escaped as \n, \r, \t, \xHH and \\. Other lines are kept.
//
// No operation fails: reading a value that cannot be read returns the default, and a value that cannot be
// written is not stored. A section name must not contain control characters or brackets, and a key neither
// these nor "=".
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "rtl/text/SettingsStore.h"

namespace rtl {

inline constexpr uint32_t KEY_READ_WRITE = 0x2001F;

class TRegIniFile {
 public:
  // Opens the store of `rootKey` and reads it. `access` is an access mask: without the right to set values
  // (0x2) nothing is written.
  TRegIniFile(std::string_view rootKey, uint32_t access);

  // Returns the value of `key` in `section`, both found ignoring the case of ASCII letters, or
  // `defaultValue` if there is none or an integer is malformed. A Boolean is stored as an integer; any
  // value but 0 is true.
  int32_t ReadInteger(std::string_view section, std::string_view key, int32_t defaultValue) const;
  std::string ReadString(std::string_view section, std::string_view key, std::string_view defaultValue) const;
  bool ReadBool(std::string_view section, std::string_view key, bool defaultValue) const;

  // Sets the value, and adds the section if it is missing. The file is replaced in one step before the call
  // returns. Settings that another process has stored since the last read are kept.
  void WriteInteger(std::string_view section, std::string_view key, int32_t value);
  void WriteString(std::string_view section, std::string_view key, std::string_view value);
  void WriteBool(std::string_view section, std::string_view key, bool value);

 private:
  std::unique_ptr<ISettingsStore> FStore;
  bool FWritable;
};

}  // namespace rtl
