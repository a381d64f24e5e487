#include "win/windows/WindowsAccess.h"

#include <vector>

namespace win {
namespace {

constexpr uint32_t kNotSupported = 50;
constexpr uint32_t kInsufficientBuffer = 122;
constexpr int64_t kUnixEpoch = 116444736000000000;  // 1970 as a FILETIME, in units of 100 ns since 1601

uint64_t Join(DWORD high, DWORD low) {
  return static_cast<uint64_t>(high) << 32 | low;
}

// Returns the user who runs the program, as text: "S-1-5-...", or an empty string.
std::wstring UserId() {
  HANDLE token = nullptr;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token)) return {};
  const THandle owner(token);
  DWORD size = 0;
  GetTokenInformation(token, TokenUser, nullptr, 0, &size);
  std::vector<std::byte> buffer(size);
  if (size == 0 || !GetTokenInformation(token, TokenUser, buffer.data(), size, &size)) return {};
  wchar_t* text = nullptr;
  if (!ConvertSidToStringSidW(reinterpret_cast<const TOKEN_USER*>(buffer.data())->User.Sid, &text)) return {};
  std::wstring id = text;
  LocalFree(text);
  return id;
}

}  // namespace

bool ReadFacts(HANDLE file, TFileFacts& facts) {
  BY_HANDLE_FILE_INFORMATION info;
  if (!GetFileInformationByHandle(file, &info)) return FailLast();
  const auto modified =
      static_cast<int64_t>(Join(info.ftLastWriteTime.dwHighDateTime, info.ftLastWriteTime.dwLowDateTime));
  facts.Stamp = {info.dwVolumeSerialNumber, Join(info.nFileIndexHigh, info.nFileIndexLow),
                 static_cast<int64_t>(Join(info.nFileSizeHigh, info.nFileSizeLow)),
                 (modified - kUnixEpoch) * 100};
  facts.Attributes = info.dwFileAttributes;
  facts.Modified = info.ftLastWriteTime;
  return true;
}

bool SetAttributesAndTime(const std::wstring& full, uint32_t attributes, const FILETIME* modified) {
  WIN32_FILE_ATTRIBUTE_DATA now;
  if (!GetFileAttributesExW(full.c_str(), GetFileExInfoStandard, &now)) return FailLast();
  if (modified && CompareFileTime(modified, &now.ftLastWriteTime) != 0) {
    THandle file;
    if (!Retry([&] {
          file = THandle(CreateFileW(full.c_str(), FILE_WRITE_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING,
                                     0, nullptr));
          return file.IsOpen();
        }))
      return false;
    if (!SetFileTime(file.Get(), nullptr, nullptr, modified)) return FailLast();
  }
  if ((now.dwFileAttributes & kCopiedAttributes) == (attributes & kCopiedAttributes)) return true;
  const uint32_t wanted = attributes & kCopiedAttributes;
  return SetFileAttributesW(full.c_str(), wanted != 0 ? wanted : FILE_ATTRIBUTE_NORMAL) || FailLast();
}

TPrivateAccess::TPrivateAccess() {
  FAttributes.nLength = sizeof FAttributes;
  const std::wstring user = UserId();
  const std::wstring text = L"D:P(A;OICI;FA;;;" + user + L")";
  if (user.empty() || !ConvertStringSecurityDescriptorToSecurityDescriptorW(
                          text.c_str(), SDDL_REVISION_1, &FAttributes.lpSecurityDescriptor, nullptr)) {
    FAttributes.lpSecurityDescriptor = nullptr;
  }
}

TPrivateAccess::~TPrivateAccess() {
  if (FAttributes.lpSecurityDescriptor) LocalFree(FAttributes.lpSecurityDescriptor);
}

bool CopyAccessList(const std::wstring& from, const std::wstring& to) {
  constexpr SECURITY_INFORMATION kList = DACL_SECURITY_INFORMATION;
  std::vector<std::byte> buffer(1024);
  DWORD size = 0;
  while (!GetFileSecurityW(from.c_str(), kList, buffer.data(), static_cast<DWORD>(buffer.size()), &size)) {
    const uint32_t code = ::GetLastError();
    if (code == kNotSupported) return true;
    if (code != kInsufficientBuffer || size <= buffer.size()) return false;
    buffer.resize(size);
  }
  return SetFileSecurityW(to.c_str(), kList, buffer.data()) || ::GetLastError() == kNotSupported;
}

}  // namespace win
