#include "win/windows/WindowsTemporary.h"

#include <atomic>
#include <cstdio>
#include <cwchar>

#include "win/FileSystem.h"

namespace win {
namespace {

constexpr std::wstring_view kExtension = L".$$$";

// Returns the prefix of the names given by processes on this computer. Temporary files of other computers,
// on a network volume, are left alone: nobody here can tell whether their owner still runs.
const std::wstring& NamePrefix() {
  static const std::wstring prefix = [] {
    wchar_t host[MAX_COMPUTERNAME_LENGTH + 1] = {};
    DWORD length = MAX_COMPUTERNAME_LENGTH + 1;
    GetComputerNameW(host, &length);
    uint32_t hash = 2166136261;  // FNV-1a
    for (const wchar_t* c = host; *c; ++c) hash = (hash ^ static_cast<uint32_t>(*c)) * 16777619;
    wchar_t name[24];
    std::swprintf(name, 24, L"~kva%08x-", hash);
    return std::wstring(name);
  }();
  return prefix;
}

// Returns the process that a temporary file's name gives as its owner, or 0 if it is no such name.
DWORD OwnerOf(std::wstring_view name) {
  const std::wstring& prefix = NamePrefix();
  if (!name.starts_with(prefix) || !name.ends_with(kExtension)) return 0;
  return static_cast<DWORD>(std::wcstoul(std::wstring(name.substr(prefix.size())).c_str(), nullptr, 16));
}

bool IsEnded(DWORD process) {
  const THandle handle(OpenProcess(SYNCHRONIZE, FALSE, process));
  if (!handle.IsOpen()) return ::GetLastError() == ERROR_INVALID_PARAMETER;
  return WaitForSingleObject(handle.Get(), 0) == WAIT_OBJECT_0;
}

}  // namespace

TTemporaryFile::~TTemporaryFile() {
  FFile.Close();
  if (FPath.empty()) return;
  SetFileAttributesW(FPath.c_str(), FILE_ATTRIBUTE_NORMAL);
  DeleteFileW(FPath.c_str());
}

bool TTemporaryFile::Create(std::wstring_view folder, SECURITY_ATTRIBUTES* access) {
  static std::atomic<unsigned> counter = 0;
  constexpr uint32_t kFileExists = ERROR_FILE_EXISTS;
  for (;;) {
    wchar_t number[40];
    std::swprintf(number, 40, L"%lx-%x", GetCurrentProcessId(), counter.fetch_add(1));
    std::wstring path(folder);
    path.append(NamePrefix()).append(number).append(kExtension);
    FFile =
        THandle(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE,
                            access, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (FFile.IsOpen()) {
      FPath = std::move(path);
      return true;
    }
    if (::GetLastError() != kFileExists) return FailLast();
  }
}

void SweepTemporaryFiles(std::wstring_view folder) {
  WIN32_FIND_DATAW data;
  const std::wstring pattern = std::wstring(folder).append(NamePrefix()).append(L"*").append(kExtension);
  const HANDLE search = FindFirstFileW(pattern.c_str(), &data);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    const DWORD owner = OwnerOf(data.cFileName);
    if (owner != 0 && IsEnded(owner)) DeleteFileW(std::wstring(folder).append(data.cFileName).c_str());
  } while (FindNextFileW(search, &data));
  FindClose(search);
}

}  // namespace win
