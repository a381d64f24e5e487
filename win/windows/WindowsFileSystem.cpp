#include "win/windows/WindowsFileSystem.h"

#include <cstdio>

#include "win/Errors.h"
#include "win/windows/WindowsFile.h"
#include "win/windows/WindowsFind.h"
#include "win/windows/WindowsText.h"

namespace win {
namespace {

// Returns the attributes of the file or folder that a link leads to, or INVALID_FILE_ATTRIBUTES with the
// last error set.
uint32_t AttributesBehindLink(const std::wstring& full) {
  TFileFacts facts;
  const THandle file(CreateFileW(full.c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING,
                                 FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  if (!file.IsOpen()) {
    FailLast();
    return INVALID_FILE_ATTRIBUTES;
  }
  return ReadFacts(file.Get(), facts) ? facts.Attributes : INVALID_FILE_ATTRIBUTES;
}

// The folder's identity is the name of an object of the system, which lives as long as a process has it
// open: so the lock of a process that was killed is free at once, and nobody else's access to the folder is
// affected. Other computers do not see the object. A folder of a network drive has a file in it, too, that
// the system deletes when the process closes it or ends.
class TWindowsLock : public TFileLock {
 public:
  TWindowsLock(THandle object, THandle file) : FObject(std::move(object)), FFile(std::move(file)) {}

 private:
  THandle FObject, FFile;
};

bool IsOnNetwork(const std::wstring& full) {
  const std::wstring root = WithoutPrefix(std::wstring_view(full).substr(0, RootLength(full)));
  return root.starts_with(LR"(\\)") || GetDriveTypeW(root.c_str()) == DRIVE_REMOTE;
}

// Opens the file that locks a folder among computers. Returns false if another one has it open. Where no file
// can be created, `file` remains closed.
bool OpenLockFile(const std::wstring& folder, THandle& file) {
  constexpr DWORD kFlags = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE;
  const std::wstring name = folder + (folder.ends_with(L'\\') ? L"" : L"\\") + L"~kvalock.$$$";
  file = THandle(CreateFileW(name.c_str(), GENERIC_READ | DELETE, 0, nullptr, OPEN_ALWAYS, kFlags, nullptr));
  return file.IsOpen() || ::GetLastError() != static_cast<DWORD>(ERROR_SHARING_VIOLATION);
}

}  // namespace

std::unique_ptr<TFileSystem> AnotherHostFileSystem() {
  return std::make_unique<TWindowsFileSystem>();
}

std::unique_ptr<TFileHandle> TWindowsFileSystem::CreateFileA(std::string_view path, TFileMode mode) {
  return OpenFile(FWritten, path, mode);
}

std::optional<TFileStamp> TWindowsFileSystem::GetFileStamp(std::string_view path) {
  return StampOfFile(path);
}

std::unique_ptr<TFindHandle> TWindowsFileSystem::FindFirstFileA(std::string_view pattern, TFindData& data) {
  return FindFirst(FPassedOver, pattern, data);
}

bool TWindowsFileSystem::CopyFileA(std::string_view source, std::string_view target, bool failIfExists) {
  return FCopier.Copy(source, target, TOverwriting::Document, failIfExists);
}

bool TWindowsFileSystem::CopyOverUnchanged(std::string_view source, std::string_view target,
                                           const TFileStamp& expected) {
  return FCopier.Copy(source, target, TOverwriting::Document, false, &expected);
}

bool TWindowsFileSystem::CopyToOwnFile(std::string_view source, std::string_view target) {
  return FCopier.Copy(source, target, TOverwriting::Own, false);
}

bool TWindowsFileSystem::ReplaceFileContents(std::string_view path, std::string_view bytes) {
  return FCopier.ReplaceContents(path, bytes);
}

bool TWindowsFileSystem::MoveFileReplacing(std::string_view source, std::string_view target) {
  return FCopier.Move(source, target);
}

uint32_t TWindowsFileSystem::GetFileAttributesA(std::string_view path) {
  std::wstring full;
  TEntryInfo info;
  if (!FullPath(path, TPathKind::Folder, full) || !Look(full, info)) return INVALID_FILE_ATTRIBUTES;
  uint32_t known = info.Attributes;
  if (info.IsLink) {
    known = AttributesBehindLink(full);
    if (known == INVALID_FILE_ATTRIBUTES) return known;
  }
  if ((known & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    // On a folder, read-only means that the system displays it in another way.
    return FILE_ATTRIBUTE_DIRECTORY | (info.IsLink ? FILE_ATTRIBUTE_REPARSE_POINT : 0);
  }
  if (path.back() == '\\' || path.back() == '/') {
    SetLastError(ERROR_INVALID_NAME);
    return INVALID_FILE_ATTRIBUTES;
  }
  return (known & FILE_ATTRIBUTE_READONLY) != 0 ? FILE_ATTRIBUTE_READONLY : FILE_ATTRIBUTE_NORMAL;
}

bool TWindowsFileSystem::MakeDirectory(std::string_view path, SECURITY_ATTRIBUTES* access) {
  std::wstring full;
  return FullPath(path, TPathKind::Folder, full) && (::CreateDirectoryW(full.c_str(), access) || FailLast());
}

bool TWindowsFileSystem::CreateDirectoryA(std::string_view path) {
  return MakeDirectory(path, nullptr);
}

bool TWindowsFileSystem::CreatePrivateDirectory(std::string_view path) {
  TPrivateAccess access;
  return access.Get() ? MakeDirectory(path, access.Get()) : Fail(ERROR_ACCESS_DENIED);
}

bool TWindowsFileSystem::RemoveDirectoryA(std::string_view path) {
  std::wstring full;
  return FullPath(path, TPathKind::Folder, full) &&
         Retry([&] { return RemoveDirectoryW(full.c_str()) != 0; });
}

bool TWindowsFileSystem::DeleteFileA(std::string_view path) {
  std::wstring full;
  return FullPath(path, TPathKind::File, full) && Retry([&] { return DeleteFileW(full.c_str()) != 0; });
}

bool TWindowsFileSystem::CopyPermissions(std::string_view source, std::string_view target) {
  std::wstring from, to;
  if (!FullPath(source, TPathKind::Folder, from) || !FullPath(target, TPathKind::Folder, to)) return false;
  const DWORD attributes = GetFileAttributesW(from.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return FailLast();
  return SetAttributesAndTime(to, attributes & ~FILE_ATTRIBUTE_READONLY, nullptr);
}

std::string TWindowsFileSystem::GetTempPathA() {
  wchar_t folder[MAX_PATH + 2] = {};
  const DWORD length = GetTempPathW(MAX_PATH + 1, folder);
  if (length == 0) {
    FailLast();
    return {};
  }
  return GetLongPathNameA(ToUtf8OrReplaced({folder, length})) + "\\";
}

std::string TWindowsFileSystem::GetLongPathNameA(std::string_view path) {
  std::wstring full;
  if (!FullPath(path, TPathKind::Folder, full)) return std::string(path);
  return ToUtf8(WithoutPrefix(SpelledPath(full))).value_or(std::string(path));
}

void TWindowsFileSystem::ForgetWritten() {
  FWritten.Discard();
}

std::unique_ptr<TFileLock> TWindowsFileSystem::LockFolder(std::string_view path) {
  std::wstring full;
  TFileFacts facts;
  if (!FullPath(path, TPathKind::Folder, full)) return nullptr;
  const THandle folder(CreateFileW(full.c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING,
                                   FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  if (!folder.IsOpen()) {
    if (!FailLast() && GetLastError() == ERROR_FILE_NOT_FOUND) SetLastError(ERROR_PATH_NOT_FOUND);
    return nullptr;
  }
  if (!ReadFacts(folder.Get(), facts)) return nullptr;
  if ((facts.Attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
    Fail(ERROR_PATH_NOT_FOUND);
    return nullptr;
  }
  wchar_t name[80];
  std::swprintf(name, 80, L"Global\\kvamigrate-%llx-%llx",
                static_cast<unsigned long long>(facts.Stamp.Volume),
                static_cast<unsigned long long>(facts.Stamp.Identity));
  THandle object(CreateMutexW(nullptr, FALSE, name));
  const uint32_t code = ::GetLastError();
  // Another user's object cannot be opened.
  if (!object.IsOpen() || code == ERROR_ALREADY_EXISTS) {
    Fail(object.IsOpen() || code == ERROR_ACCESS_DENIED ? ERROR_SHARING_VIOLATION : code);
    return nullptr;
  }
  THandle file;
  if (IsOnNetwork(full) && !OpenLockFile(full, file)) {
    FailLast();
    return nullptr;
  }
  return std::make_unique<TWindowsLock>(std::move(object), std::move(file));
}

bool TWindowsFileSystem::FlushFolder(std::string_view path) {
  std::wstring full;
  TEntryInfo info;
  if (!FullPath(path, TPathKind::Folder, full)) return false;
  if (!Look(full, info))
    return Fail(GetLastError() == ERROR_FILE_NOT_FOUND ? ERROR_PATH_NOT_FOUND : GetLastError());
  return FlushFolderNames(full);
}

bool TWindowsFileSystem::FlushWritten() {
  return FWritten.Flush();
}

}  // namespace win
