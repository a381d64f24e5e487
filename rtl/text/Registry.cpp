#include "rtl/text/Registry.h"

#include <charconv>
#include <optional>

#include "rtl/text/SysUtils.h"

namespace rtl {

namespace {

constexpr uint32_t kSetValue = 0x2;

std::optional<int32_t> ParseInteger(std::string_view text) {
  text = Trim(text);
  int32_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

}  // namespace

TRegIniFile::TRegIniFile(std::string_view rootKey, uint32_t access)
    : FStore(OpenSettingsStore(rootKey)), FWritable((access & kSetValue) != 0) {}

int32_t TRegIniFile::ReadInteger(std::string_view section, std::string_view key, int32_t defaultValue) const {
  const std::optional<std::string> value = FStore->Read(section, key);
  return value ? ParseInteger(*value).value_or(defaultValue) : defaultValue;
}

std::string TRegIniFile::ReadString(std::string_view section, std::string_view key,
                                    std::string_view defaultValue) const {
  return FStore->Read(section, key).value_or(std::string(defaultValue));
}

bool TRegIniFile::ReadBool(std::string_view section, std::string_view key, bool defaultValue) const {
  return ReadInteger(section, key, defaultValue ? 1 : 0) != 0;
}

void TRegIniFile::WriteInteger(std::string_view section, std::string_view key, int32_t value) {
  WriteString(section, key, std::to_string(value));
}

void TRegIniFile::WriteBool(std::string_view section, std::string_view key, bool value) {
  WriteString(section, key, value ? "1" : "0");
}

void TRegIniFile::WriteString(std::string_view section, std::string_view key, std::string_view value) {
  if (FWritable) FStore->Write(section, key, value);
}

}  // namespace rtl
