#include "tests/windows/RegistryText.h"

#include <utility>

#include "rtl/text/Lines.h"
#include "win/windows/WindowsApi.h"
#include "win/windows/WindowsText.h"

namespace tests {
namespace {

constexpr wchar_t kRoot[] = L"Software\\Tarvex";
constexpr std::pair<char, char> kEscapes[] = {{'\\', '\\'}, {'n', '\n'}, {'r', '\r'}, {'t', '\t'}};

std::string Escaped(const std::string& value) {
  std::string text;
  for (const char c : value) {
    bool isEscaped = false;
    for (const auto& [letter, escaped] : kEscapes) {
      if (c == escaped) text.append({'\\', letter});
      isEscaped = isEscaped || c == escaped;
    }
    if (!isEscaped) text += c;
  }
  return text;
}

std::string Unescaped(std::string_view text) {
  std::string value;
  for (size_t i = 0; i < text.size(); ++i) {
    char c = text[i];
    if (c == '\\' && i + 1 < text.size()) {
      ++i;
      for (const auto& [letter, escaped] : kEscapes) {
        if (text[i] == letter) c = escaped;
      }
    }
    value += c;
  }
  return value;
}

std::string ReadSection(HKEY key) {
  std::string text;
  wchar_t name[256], value[16384];
  for (DWORD i = 0;; ++i) {
    DWORD nameLength = 256, size = sizeof value - sizeof(wchar_t), type = 0;
    if (RegEnumValueW(key, i, name, &nameLength, nullptr, &type, reinterpret_cast<BYTE*>(value), &size) != 0)
      return text;
    value[size / sizeof(wchar_t)] = L'\0';
    text += win::ToUtf8OrReplaced(name) + "=" + Escaped(win::ToUtf8OrReplaced(value)) + "\n";
  }
}

}  // namespace

std::string ReadRegistry() {
  HKEY root = nullptr;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, kRoot, 0, KEY_READ, &root) != 0) return "(missing)";
  std::string text;
  wchar_t name[256];
  DWORD length = 256;
  for (DWORD i = 0; RegEnumKeyExW(root, i, name, &length, nullptr, nullptr, nullptr, nullptr) == 0; ++i) {
    HKEY section = nullptr;
    length = 256;
    if (RegOpenKeyExW(root, name, 0, KEY_READ, &section) != 0) continue;
    text += (text.empty() ? "[" : "\n[") + win::ToUtf8OrReplaced(name) + "]\n" + ReadSection(section);
    RegCloseKey(section);
  }
  RegCloseKey(root);
  return text;
}

void WriteRegistry(std::string_view text) {
  RegDeleteTreeW(HKEY_CURRENT_USER, kRoot);
  std::wstring section;
  while (!text.empty()) {
    const std::string_view line = rtl::TakeLine(text);
    const size_t equals = line.find('=');
    if (line.starts_with('[')) {
      section = std::wstring(kRoot) + L"\\" + win::ToWideOrReplaced(line.substr(1, line.find(']') - 1));
    } else if (equals != line.npos) {
      const std::wstring value = win::ToWideOrReplaced(Unescaped(line.substr(equals + 1)));
      RegSetKeyValueW(HKEY_CURRENT_USER, section.c_str(),
                      win::ToWideOrReplaced(line.substr(0, equals)).c_str(), REG_SZ, value.c_str(),
                      static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
    }
  }
}

}  // namespace tests
