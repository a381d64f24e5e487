#include "win/windows/WindowsText.h"

#include "win/windows/WindowsApi.h"

namespace win {
namespace {

std::optional<std::wstring> Widen(std::string_view utf8, DWORD flags) {
  if (utf8.empty()) return std::wstring();
  // No text has more UTF-16 units than UTF-8 bytes.
  std::wstring wide(utf8.size(), L'\0');
  const int count = MultiByteToWideChar(CP_UTF8, flags, utf8.data(), static_cast<int>(utf8.size()),
                                        wide.data(), static_cast<int>(wide.size()));
  if (count <= 0) return std::nullopt;
  wide.resize(static_cast<size_t>(count));
  return wide;
}

std::optional<std::string> Narrow(std::wstring_view wide, DWORD flags) {
  if (wide.empty()) return std::string();
  // A unit takes at most three bytes.
  std::string utf8(wide.size() * 3, '\0');
  const int count = WideCharToMultiByte(CP_UTF8, flags, wide.data(), static_cast<int>(wide.size()),
                                        utf8.data(), static_cast<int>(utf8.size()), nullptr, nullptr);
  if (count <= 0) return std::nullopt;
  utf8.resize(static_cast<size_t>(count));
  return utf8;
}

}  // namespace

std::optional<std::wstring> ToWide(std::string_view utf8) {
  return Widen(utf8, MB_ERR_INVALID_CHARS);
}

std::wstring ToWideOrReplaced(std::string_view utf8) {
  return Widen(utf8, 0).value_or(std::wstring());
}

std::optional<std::string> ToUtf8(std::wstring_view wide) {
  return Narrow(wide, WC_ERR_INVALID_CHARS);
}

std::string ToUtf8OrReplaced(std::wstring_view wide) {
  return Narrow(wide, 0).value_or(std::string());
}

}  // namespace win
