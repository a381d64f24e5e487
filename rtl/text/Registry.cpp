#include "rtl/text/Registry.h"

#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"
#include "win/paths/Drives.h"

namespace rtl {

namespace {

namespace fs = std::filesystem;

constexpr uint32_t kSetValue = 0x2;

// The folder of a user's settings; empty without one. A relative $XDG_CONFIG_HOME is no folder by its own
// rules.
fs::path ConfigFolder() {
  const char* configured = std::getenv("XDG_CONFIG_HOME");
  if (configured != nullptr && *configured == '/') return configured;
  const char* home = std::getenv("HOME");
  if (home != nullptr && *home != '\0') return fs::path(home) / ".config";
  return {};
}

// "Software\Tarvex" -> ~/.config/Tarvex/registry.ini: the level that all root keys share is left out.
std::string StoreFor(std::string_view rootKey) {
  fs::path store = ConfigFolder();
  if (store.empty()) return {};
  for (size_t begin = 0; begin <= rootKey.size();) {
    const size_t end = std::min(rootKey.find('\\', begin), rootKey.size());
    const std::string_view level = rootKey.substr(begin, end - begin);
    if (!level.empty() && !(begin == 0 && SameText(level, "Software"))) store /= level;
    begin = end + 1;
  }
  return (store / "registry.ini").string();
}

std::string Escape(std::string_view value) {
  constexpr char kHex[] = "0123456789ABCDEF";
  std::string escaped;
  for (const char c : value) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\\') {
      escaped += "\\\\";
    } else if (c == '\n') {
      escaped += "\\n";
    } else if (c == '\r') {
      escaped += "\\r";
    } else if (c == '\t') {
      escaped += "\\t";
    } else if (byte < 32 || byte == 127) {
      escaped += {'\\', 'x', kHex[byte >> 4], kHex[byte & 15]};
    } else {
      escaped += c;
    }
  }
  return escaped;
}

// The value behind its escapes; nothing if one of them is none.
std::optional<std::string> Unescape(std::string_view escaped) {
  std::string value;
  for (size_t i = 0; i < escaped.size(); ++i) {
    if (escaped[i] != '\\') {
      value += escaped[i];
      continue;
    }
    if (++i == escaped.size()) return std::nullopt;
    switch (escaped[i]) {
      case '\\':
        value += '\\';
        break;
      case 'n':
        value += '\n';
        break;
      case 'r':
        value += '\r';
        break;
      case 't':
        value += '\t';
        break;
      case 'x': {
        if (i + 2 >= escaped.size()) return std::nullopt;
        unsigned byte = 0;
        const char* const end = escaped.data() + i + 3;
        const auto [stop, error] = std::from_chars(escaped.data() + i + 1, end, byte, 16);
        if (error != std::errc() || stop != end) return std::nullopt;
        value += static_cast<char>(byte);
        i += 2;
        break;
      }
      default:
        return std::nullopt;
    }
  }
  return value;
}

std::optional<int32_t> ParseInteger(std::string_view text) {
  text = Trim(text);
  int32_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

// A line without the CR that an editor from elsewhere may have left.
std::string_view WithoutCr(std::string_view line) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

bool IsSectionLine(std::string_view line, std::string_view& name) {
  line = Trim(line);
  if (line.size() < 2 || line.front() != '[' || line.back() != ']') return false;
  name = line.substr(1, line.size() - 2);
  return true;
}

bool IsBlank(std::string_view line) {
  return Trim(line).empty();
}

// The lines of a store. A file that does not exist is an empty store; nothing for one that cannot be read.
std::optional<std::vector<std::string>> ReadStore(const fs::path& store) {
  std::vector<std::string> lines;
  std::error_code error;
  if (!fs::exists(store, error) && !error) return lines;
  if (!fs::is_regular_file(store, error)) return std::nullopt;
  std::ifstream file(store, std::ios::binary);
  if (!file) return std::nullopt;
  for (std::string line; std::getline(file, line);) lines.push_back(std::move(line));
  if (file.bad()) return std::nullopt;
  return lines;
}

// Replaces the store in one step. A link is followed, so that it stays a link; a store that its owner has
// write-protected stays as it is.
void ReplaceStore(const fs::path& store, const std::vector<std::string>& lines) {
  std::error_code error;
  fs::create_directories(store.parent_path(), error);
  std::string text;
  for (const std::string& line : lines) text.append(line) += '\n';
  [[maybe_unused]] const bool isReplaced = win::ReplaceFileContents(win::ToWindowsPath(store.string()), text);
}

}  // namespace

TRegIniFile::TRegIniFile(std::string_view rootKey, uint32_t access)
    : FStoreName(StoreFor(rootKey)), FWritable((access & kSetValue) != 0) {
  if (FStoreName.empty()) return;
  if (auto lines = ReadStore(FStoreName)) FLines = std::move(*lines);
}

int32_t TRegIniFile::ReadInteger(std::string_view section, std::string_view key, int32_t defaultValue) const {
  std::string value;
  if (!ReadRaw(section, key, value)) return defaultValue;
  return ParseInteger(value).value_or(defaultValue);
}

std::string TRegIniFile::ReadString(std::string_view section, std::string_view key,
                                    std::string_view defaultValue) const {
  std::string value;
  if (!ReadRaw(section, key, value)) return std::string(defaultValue);
  return value;
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
  if (!FWritable || FStoreName.empty()) return;
  // A store that is there and cannot be read is not overwritten: its settings would be lost.
  auto lines = ReadStore(FStoreName);
  if (!lines) return;
  FLines = std::move(*lines);

  std::string line = std::string(key) + "=" + Escape(value);
  const TPlace place = FindKey(FLines, section, key);
  const auto at = FLines.begin() + static_cast<std::ptrdiff_t>(place.Line);
  if (place.KeyFound) {
    if (*at == line) return;
    *at = std::move(line);
  } else if (place.SectionFound) {
    FLines.insert(at, std::move(line));
  } else {
    if (!FLines.empty() && !IsBlank(FLines.back())) FLines.emplace_back();
    FLines.push_back("[" + std::string(section) + "]");
    FLines.push_back(std::move(line));
  }
  ReplaceStore(FStoreName, FLines);
}

TRegIniFile::TPlace TRegIniFile::FindKey(const TLines& lines, std::string_view section,
                                         std::string_view key) {
  TPlace place;
  bool inSection = false;
  for (size_t i = 0; i < lines.size(); ++i) {
    const std::string_view line = lines[i];
    std::string_view name;
    if (IsSectionLine(line, name)) {
      inSection = SameText(name, section);
      if (inSection && !place.SectionFound) {
        place.SectionFound = true;
        place.Line = i + 1;
      }
    } else if (inSection && !IsBlank(line)) {
      const size_t equals = line.find('=');
      if (equals != std::string_view::npos && SameText(Trim(line.substr(0, equals)), key)) {
        return {.SectionFound = true, .KeyFound = true, .Line = i};
      }
      place.Line = i + 1;
    }
  }
  return place;
}

bool TRegIniFile::ReadRaw(std::string_view section, std::string_view key, std::string& value) const {
  const TPlace place = FindKey(FLines, section, key);
  if (!place.KeyFound) return false;
  const std::string_view line = WithoutCr(FLines[place.Line]);
  auto unescaped = Unescape(line.substr(line.find('=') + 1));
  if (!unescaped) return false;
  value = std::move(*unescaped);
  return true;
}

}  // namespace rtl
