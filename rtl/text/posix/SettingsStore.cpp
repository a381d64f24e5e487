// The settings in a text file.
#include "rtl/text/SettingsStore.h"

#include <charconv>
#include <cstdlib>
#include <vector>

#include "rtl/text/Exceptions.h"
#include "rtl/text/Files.h"
#include "rtl/text/Lines.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"
#include "win/paths/Drives.h"

namespace rtl {

namespace {

using TLines = std::vector<std::string>;

// Returns the folder of the user's settings, or an empty string if there is none. A relative $XDG_CONFIG_HOME
// must be ignored.
std::string ConfigFolder() {
  const char* configured = std::getenv("XDG_CONFIG_HOME");
  if (configured != nullptr && *configured == '/') return win::ToWindowsPath(configured);
  const char* home = std::getenv("HOME");
  if (home != nullptr && *home != '\0') return win::ToWindowsPath(std::string(home) + "/.config");
  return {};
}

// Returns ~/.config/Tarvex/registry.ini for "Software\Tarvex": the level that all root keys share is left
// out.
std::string StoreFor(std::string_view rootKey) {
  constexpr std::string_view kSharedLevel = "Software\\";
  const std::string folder = ConfigFolder();
  if (folder.empty()) return {};
  if (SameText(rootKey.substr(0, kSharedLevel.size()), kSharedLevel))
    rootKey.remove_prefix(kSharedLevel.size());
  return std::string(folder).append("\\").append(rootKey).append("\\registry.ini");
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

// Returns the value that Escape was given, or nullopt if `escaped` holds an invalid escape.
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

bool IsSectionLine(std::string_view line, std::string_view& name) {
  line = Trim(line);
  if (line.size() < 2 || line.front() != '[' || line.back() != ']') return false;
  name = line.substr(1, line.size() - 2);
  return true;
}

bool IsBlank(std::string_view line) {
  return Trim(line).empty();
}

// Returns the lines of a store. A file that does not exist is an empty store; nullopt if it cannot be read.
std::optional<TLines> ReadStore(const std::string& store) {
  TLines lines;
  if (win::FileSystem().GetFileAttributesA(store) == win::INVALID_FILE_ATTRIBUTES) {
    const uint32_t error = win::GetLastError();
    if (error == win::ERROR_FILE_NOT_FOUND || error == win::ERROR_PATH_NOT_FOUND) return lines;
    return std::nullopt;
  }
  try {
    const std::string text = ReadFile(store);
    for (std::string_view rest = text; !rest.empty();) lines.emplace_back(TakeLine(rest));
  } catch (const EStreamError&) {
    return std::nullopt;
  }
  return lines;
}

// The line of a key, counted from 0, or the line before which it is to be inserted.
struct TKeyLine {
  bool SectionFound = false;
  bool KeyFound = false;
  size_t Line = 0;
};

TKeyLine FindKey(const TLines& lines, std::string_view section, std::string_view key) {
  TKeyLine found;
  bool inSection = false;
  for (size_t i = 0; i < lines.size(); ++i) {
    const std::string_view line = lines[i];
    std::string_view name;
    if (IsSectionLine(line, name)) {
      inSection = SameText(name, section);
      if (inSection && !found.SectionFound) {
        found.SectionFound = true;
        found.Line = i + 1;
      }
    } else if (inSection && !IsBlank(line)) {
      const size_t equals = line.find('=');
      if (equals != std::string_view::npos && SameText(Trim(line.substr(0, equals)), key)) {
        return {.SectionFound = true, .KeyFound = true, .Line = i};
      }
      found.Line = i + 1;
    }
  }
  return found;
}

class TFileStore : public ISettingsStore {
 public:
  explicit TFileStore(std::string fileName) : FFileName(std::move(fileName)) {
    if (FFileName.empty()) return;
    if (auto lines = ReadStore(FFileName)) FLines = std::move(*lines);
  }

  std::optional<std::string> Read(std::string_view section, std::string_view key) const override {
    const TKeyLine found = FindKey(FLines, section, key);
    if (!found.KeyFound) return std::nullopt;
    const std::string_view line = FLines[found.Line];
    return Unescape(line.substr(line.find('=') + 1));
  }

  void Write(std::string_view section, std::string_view key, std::string_view value) override {
    if (FFileName.empty()) return;
    // A store that exists and cannot be read is not overwritten: its settings would be lost.
    auto lines = ReadStore(FFileName);
    if (!lines) return;
    FLines = std::move(*lines);
    if (!Insert(section, key, std::string(key) + "=" + Escape(value))) return;
    std::string text;
    for (const std::string& each : FLines) text.append(each).append("\n");
    if (CreateFolders(ExtractFileDir(FFileName))) (void)win::ReplaceFileContents(FFileName, text);
  }

 private:
  // Puts a line in the place of the key. Returns false if it is there already.
  bool Insert(std::string_view section, std::string_view key, std::string line) {
    const TKeyLine found = FindKey(FLines, section, key);
    const auto at = FLines.begin() + static_cast<std::ptrdiff_t>(found.Line);
    if (found.KeyFound) {
      if (*at == line) return false;
      *at = std::move(line);
    } else if (found.SectionFound) {
      FLines.insert(at, std::move(line));
    } else {
      if (!FLines.empty() && !IsBlank(FLines.back())) FLines.emplace_back();
      FLines.push_back("[" + std::string(section) + "]");
      FLines.push_back(std::move(line));
    }
    return true;
  }

  std::string FFileName;  // a Windows path; empty if the user has no folder for settings
  TLines FLines;          // the file as last read or written, without line ends
};

}  // namespace

std::unique_ptr<ISettingsStore> OpenSettingsStore(std::string_view rootKey) {
  return std::make_unique<TFileStore>(StoreFor(rootKey));
}

}  // namespace rtl
