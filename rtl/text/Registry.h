// TRegIniFile: the user's settings, by section and key, under a root key such as "Software\Vendor".
//
// On Windows the store is the registry. Elsewhere it is one text file a root key, `Vendor/registry.ini` below
// $XDG_CONFIG_HOME or ~/.config: `[section]` and `key=value` lines in UTF-8, with control characters and
// backslashes escaped as \n, \r, \t, \xHH and \\. Lines that are not of this form are somebody else's and
// stay.
//
// Nothing here fails: what cannot be read gives the default, what cannot be written is not stored. Section
// and key are names: a section holds no control character and no bracket, a key neither these nor "=".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace rtl {

inline constexpr uint32_t KEY_READ_WRITE = 0x2001F;

class TRegIniFile {
 public:
  // Opens the store of `rootKey`, reading it once. `access` is the access mask that the user of the store
  // needs: without the right to set values (0x2) all writes are dropped.
  TRegIniFile(std::string_view rootKey, uint32_t access);

  // The value of `key` in `section`, both found ignoring the case of ASCII letters. `defaultValue` where
  // there is none, and for an integer or a Boolean (0 is False, any other number True) whose text is no
  // number.
  int32_t ReadInteger(std::string_view section, std::string_view key, int32_t defaultValue) const;
  std::string ReadString(std::string_view section, std::string_view key, std::string_view defaultValue) const;
  bool ReadBool(std::string_view section, std::string_view key, bool defaultValue) const;

  // Sets the value, and makes the section where it is missing. The store is replaced in one step before the
  // call returns: at no moment is there half a file. Settings that another process has stored meanwhile are
  // kept.
  void WriteInteger(std::string_view section, std::string_view key, int32_t value);
  void WriteString(std::string_view section, std::string_view key, std::string_view value);
  void WriteBool(std::string_view section, std::string_view key, bool value);

  // The host's name of the file behind the store; empty where the user has no folder for settings.
  const std::string& StoreName() const { return FStoreName; }

 private:
  using TLines = std::vector<std::string>;
  // Where a key stands, or else where its line would go; Line counts from 0.
  struct TPlace {
    bool SectionFound = false;
    bool KeyFound = false;
    size_t Line = 0;
  };
  static TPlace FindKey(const TLines& lines, std::string_view section, std::string_view key);
  bool ReadRaw(std::string_view section, std::string_view key, std::string& value) const;

  std::string FStoreName;
  bool FWritable;
  TLines FLines;  // the file as read or written last, without line ends
};

}  // namespace rtl
