#include "win/windows/WindowsCopy.h"

#include "win/Errors.h"
#include "win/windows/WindowsFile.h"
#include "win/windows/WindowsTemporary.h"

namespace win {
namespace {

constexpr size_t kBufferSize = size_t{256} * 1024;
// Failures of the system's ReplaceFile that mean that the volume cannot do it, not that the file may not be
// replaced.
bool IsUnsupported(uint32_t code) {
  constexpr uint32_t kInvalidFunction = 1;
  constexpr uint32_t kRequestNotSupported = 50;
  constexpr uint32_t kCallNotImplemented = 120;
  return code == kInvalidFunction || code == kRequestNotSupported || code == kCallNotImplemented ||
         code == ERROR_INVALID_PARAMETER;
}

// Renames a file in one step. With `replaces`, another file of that name is replaced.
bool Rename(const std::wstring& from, const std::wstring& to, bool replaces) {
  const DWORD flags = MOVEFILE_WRITE_THROUGH | (replaces ? MOVEFILE_REPLACE_EXISTING : 0);
  return Retry([&] { return MoveFileExW(from.c_str(), to.c_str(), flags) != 0; },
               replaces ? TInUse::SharingOrDenied : TInUse::Sharing);
}

// Gives the file `from` the name of the existing file `to`, with that file's access list, other streams,
// creation time and identity, in one step.
bool TakePlace(const std::wstring& from, const std::wstring& to) {
  constexpr DWORD kFlags = REPLACEFILE_WRITE_THROUGH | REPLACEFILE_IGNORE_MERGE_ERRORS;
  const bool isDone =
      Retry([&] { return ReplaceFileW(to.c_str(), from.c_str(), nullptr, kFlags, nullptr, nullptr) != 0; },
            TInUse::SharingOrDenied);
  return isDone || (IsUnsupported(GetLastError()) && Rename(from, to, true));
}

// Returns whether the file at a full path has the stamp. Otherwise sets the last error.
bool HasStamp(const std::wstring& full, const TFileStamp& expected) {
  TFileFacts facts;
  const THandle file(
      CreateFileW(full.c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
  if (!file.IsOpen()) return Fail(ERROR_FILE_INVALID);
  return ReadFacts(file.Get(), facts) && (facts.Stamp == expected || Fail(ERROR_FILE_INVALID));
}

}  // namespace

// Finds the target of a copy, and the file that it replaces. Returns false, with the last error set, if it
// cannot be told what is there.
bool TWindowsCopier::FindTarget(std::string_view path, TOverwriting rule, TTarget& target) {
  if (!FullPath(path, TPathKind::File, target.Path)) return false;
  target.Exists = Look(target.Path, target.Info);
  if (!target.Exists) return GetLastError() == ERROR_FILE_NOT_FOUND;
  bool isKindTaken = !target.Info.IsFolder();
  if (target.Info.IsLink && isKindTaken && rule == TOverwriting::Document) {
    if (!FollowLink(target.Path) || !Look(target.Path, target.Info)) return false;
    isKindTaken = !target.Info.IsFolder();
  } else if (target.Info.IsLink) {
    isKindTaken = isKindTaken && rule == TOverwriting::Name;
  }
  const bool isReadOnly = !target.Info.IsLink && target.Info.IsReadOnly();
  target.IsRefused = !isKindTaken || (isReadOnly && rule != TOverwriting::Own);
  target.Path = std::wstring(FolderOf(target.Path)) + SpelledLeaf(target.Path);
  return true;
}

bool TWindowsCopier::CopyContents(HANDLE from, HANDLE to) {
  if (FBuffer.empty()) FBuffer.resize(kBufferSize);
  for (;;) {
    DWORD got = 0, done = 0;
    if (!ReadFile(from, FBuffer.data(), static_cast<DWORD>(FBuffer.size()), &got, nullptr)) return FailLast();
    if (got == 0) return true;
    if (!WriteFile(to, FBuffer.data(), got, &done, nullptr)) return FailLast();
    if (done != got) return Fail(ERROR_DISK_FULL);
  }
}

// Writes a file beside the target by calling `fill`, which returns false, with the last error set, on
// failure, and gives it the target's name. On failure returns false, with the last error set, and the
// target is unchanged.
bool TWindowsCopier::Replace(const TTarget& target, TOverwriting rule, bool onlyIfFree, const TNewFile& made,
                             const TFill& fill, const TFileStamp* expected) {
  const bool isPrivate = !made.AccessOf.empty();
  const bool becomesReadOnly = (made.Attributes & FILE_ATTRIBUTE_READONLY) != 0;
  const bool keepsIdentity = target.Exists && rule == TOverwriting::Document;
  TPrivateAccess access;
  TTemporaryFile file;
  SweepOnce(FolderOf(target.Path));
  if (!file.Create(FolderOf(target.Path), isPrivate ? access.Get() : nullptr)) return false;
  if (!fill(file.Handle()) || (becomesReadOnly && !FlushFile(file.Handle()))) return false;
  file.Close();
  // If the list cannot be read or set, the file remains readable for the user alone.
  if (isPrivate) CopyAccessList(made.AccessOf, file.Path());
  // The system's ReplaceFile opens the new file for writing.
  const uint32_t attributes = made.Attributes & ~(keepsIdentity ? FILE_ATTRIBUTE_READONLY : 0);
  if (!SetAttributesAndTime(file.Path(), attributes, made.Modified)) return false;
  if (expected && !HasStamp(target.Path, *expected)) return false;
  const bool unlocksOwn = target.Exists && rule == TOverwriting::Own && target.Info.IsReadOnly();
  if (unlocksOwn &&
      !SetAttributesAndTime(target.Path, target.Info.Attributes & ~FILE_ATTRIBUTE_READONLY, nullptr))
    return false;
  if (!becomesReadOnly) FWritten.Note(target.Path);
  if (!(keepsIdentity ? TakePlace(file.Path(), target.Path)
                      : Rename(file.Path(), target.Path, !onlyIfFree))) {
    const uint32_t code = GetLastError();
    if (unlocksOwn) (void)SetAttributesAndTime(target.Path, target.Info.Attributes, nullptr);
    return Fail(onlyIfFree && code == ERROR_ALREADY_EXISTS ? ERROR_FILE_EXISTS : code);
  }
  file.Release();
  return !keepsIdentity || SetAttributesAndTime(target.Path, made.Attributes, made.Modified);
}

void TWindowsCopier::SweepOnce(std::wstring_view folder) {
  if (FSwept.emplace(folder).second) SweepTemporaryFiles(folder);
}

bool TWindowsCopier::Copy(std::string_view source, std::string_view target, TOverwriting rule,
                          bool failIfExists, const TFileStamp* expected) {
  std::wstring from;
  TFileFacts facts;
  TTarget to;
  if (!FullPath(source, TPathKind::File, from)) return false;
  const THandle file = OpenForReading(from, facts);
  if (!file.IsOpen() || !FindTarget(target, rule, to)) return false;
  if (to.Exists && failIfExists) return Fail(ERROR_FILE_EXISTS);
  if (to.IsRefused) return Fail(ERROR_ACCESS_DENIED);
  if (to.Exists) {
    const THandle existing(
        CreateFileW(to.Path.c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
    TFileFacts old;
    const bool isSame = existing.IsOpen() && ReadFacts(existing.Get(), old) &&
                        old.Stamp.Volume == facts.Stamp.Volume && old.Stamp.Identity == facts.Stamp.Identity;
    if (isSame) return Fail(ERROR_SHARING_VIOLATION);
  }
  TNewFile made{{}, facts.Attributes, &facts.Modified};
  if (rule == TOverwriting::Own) {
    made.AccessOf = from;
  } else if (to.Exists) {
    made.AccessOf = to.Path;
    // A hidden file stays hidden; whether it is read-only comes from the source, like other permissions.
    made.Attributes =
        (to.Info.Attributes & ~FILE_ATTRIBUTE_READONLY) | (facts.Attributes & FILE_ATTRIBUTE_READONLY);
  }
  return Replace(
      to, rule, failIfExists, made, [&](HANDLE copy) { return CopyContents(file.Get(), copy); }, expected);
}

bool TWindowsCopier::ReplaceContents(std::string_view path, std::string_view bytes) {
  TTarget to;
  if (!FindTarget(path, TOverwriting::Document, to)) return false;
  if (to.IsRefused) return Fail(ERROR_ACCESS_DENIED);
  TNewFile made;
  if (to.Exists) made = {to.Path, to.Info.Attributes, nullptr};
  const auto fill = [bytes](HANDLE file) {
    for (std::string_view rest = bytes; !rest.empty();) {
      DWORD done = 0;
      if (!WriteFile(file, rest.data(), static_cast<DWORD>(std::min(rest.size(), size_t{1} << 30)), &done,
                     nullptr))
        return FailLast();
      rest.remove_prefix(done);
    }
    return true;
  };
  return Replace(to, TOverwriting::Document, false, made, fill, nullptr);
}

bool TWindowsCopier::Move(std::string_view source, std::string_view target) {
  std::wstring from;
  TEntryInfo info;
  TTarget to;
  if (!FullPath(source, TPathKind::File, from) || !Look(from, info)) return false;
  if (info.IsFolder() || info.IsLink) return Fail(ERROR_ACCESS_DENIED);
  if (!FindTarget(target, TOverwriting::Name, to)) return false;
  if (to.IsRefused) return Fail(ERROR_ACCESS_DENIED);
  if (!info.IsReadOnly()) FWritten.Note(to.Path);
  return Rename(from, to.Path, true);
}

}  // namespace win
