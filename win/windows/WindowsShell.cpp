#include <string>

#include "win/FileSystem.h"
#include "win/Shell.h"
#include "win/windows/WindowsErrors.h"
#include "win/windows/WindowsPath.h"

namespace win {

bool ShellExecuteA(std::string_view operation, std::string_view file) {
  std::wstring full;
  if (operation != "open") return Fail(ERROR_INVALID_PARAMETER);
  if (FileSystem().GetFileAttributesA(file) == INVALID_FILE_ATTRIBUTES) return false;
  if (!FullPath(file, TPathKind::Folder, full)) return false;
  const auto result = reinterpret_cast<INT_PTR>(
      ShellExecuteW(nullptr, L"open", WithoutPrefix(full).c_str(), nullptr, nullptr, SW_SHOWNORMAL));
  return result > 32 || Fail(ERROR_FILE_NOT_FOUND);
}

}  // namespace win
