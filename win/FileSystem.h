// The file functions of Windows that the system uses, as one interface.
//
// Everything above this layer speaks Windows paths: UTF-8 strings with a backslash between components and an
// optional drive letter. The host's implementation turns them into the host's names (win/Drives.h) and keeps
// Windows' rules for case, attributes and overwriting. win/FileApi.h gives the same operations as free
// functions on the file system in force; a test puts another one in force with TFileSystemOverride.
//
// Every operation reports failure by its result and leaves the reason in GetLastError (win/Errors.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace win {

inline constexpr uint32_t FILE_ATTRIBUTE_READONLY = 0x01;
inline constexpr uint32_t FILE_ATTRIBUTE_DIRECTORY = 0x10;
inline constexpr uint32_t FILE_ATTRIBUTE_NORMAL = 0x80;
inline constexpr uint32_t FILE_ATTRIBUTE_REPARSE_POINT =
    0x400;  // a link, beside the attributes of what it leads to
inline constexpr uint32_t INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF;

// How CreateFileA opens: an existing file for reading, or a new or truncated one for reading and writing.
enum class TFileMode { OpenRead, Create };

// An open file. The destructor closes it. Reads and writes go on from the file's position, counted in bytes.
class TFileHandle {
 public:
  virtual ~TFileHandle() = default;
  // Reads up to `count` bytes; the number read, 0 at the end of the file, -1 on failure.
  [[nodiscard]] virtual int64_t Read(void* buffer, size_t count) = 0;
  // Writes all `count` bytes, or fails: the number written may then be anything below `count`.
  [[nodiscard]] virtual bool Write(const void* buffer, size_t count) = 0;
  // Moves to `position`, counted in bytes from the start; it may lie behind the end.
  [[nodiscard]] virtual bool Seek(int64_t position) = 0;
  // The file's length in bytes, -1 on failure; of a file open for reading, as it was when it was opened.
  [[nodiscard]] virtual int64_t Size() = 0;
};

struct TFindData {
  std::string FileName;  // the entry's name as it stands on disk, without its folder
  uint32_t FileAttributes = 0;
};

// An open folder walk; the destructor is FindClose.
class TFindHandle {
 public:
  virtual ~TFindHandle() = default;
  // FindNextFileA: False, with ERROR_NO_MORE_FILES, behind the last entry.
  [[nodiscard]] virtual bool Next(TFindData& data) = 0;
};

class TFileSystem {
 public:
  virtual ~TFileSystem() = default;

  // Null on failure. `Create` replaces the contents of an existing file and keeps its name's case; a
  // read-only file, or a folder, of that name is ERROR_ACCESS_DENIED. Only regular files are opened: a pipe
  // or a device is ERROR_ACCESS_DENIED too, at once. A file that is created, or emptied, stays where writing
  // to it fails.
  [[nodiscard]] virtual std::unique_ptr<TFileHandle> CreateFileA(std::string_view path, TFileMode mode) = 0;

  // Copies contents, last-write time and permission bits to a file; `target` names the file, not its folder.
  // An existing target keeps the case of its name and its owner; a link is followed to the file it names. A
  // read-only target, or a folder, is ERROR_ACCESS_DENIED, the source itself ERROR_SHARING_VIOLATION.
  //
  // The target comes into being, or is replaced, in one step, by a temporary file in its folder that takes
  // its name: nobody ever sees half a file under that name. After a failure the target is as it was and the
  // temporary file is gone; a process that is killed may leave one behind ("~kva...$$$"). The folder must be
  // writable. What a power cut leaves is the target as it was or as it became if FlushWritten succeeded
  // since; else, on file systems that do not bring contents to the disk before names, a file may come out
  // empty. The source is not touched, so one that was flushed before is there to copy from again.
  [[nodiscard]] virtual bool CopyFileA(std::string_view source, std::string_view target,
                                       bool failIfExists) = 0;

  // Walks the folder of a pattern "FOLDER\*.*", the only pattern there is. The first entries are "." and
  // "..", then come all others in the order that NTFS gives: by upper-cased name, compared by UTF-16 unit,
  // and by the exact name where two are equal so far. The entries are fixed when the walk begins: what is
  // created or deleted meanwhile makes no difference. Null on failure.
  //
  // An entry's attributes tell folders, links to folders (both DIRECTORY and REPARSE_POINT) and all others
  // (NORMAL); whether one is read-only is left to GetFileAttributesA. An entry that no Windows path can name
  // is passed over, and the user told once (win/Diagnostics.h).
  [[nodiscard]] virtual std::unique_ptr<TFindHandle> FindFirstFileA(std::string_view pattern,
                                                                    TFindData& data) = 0;

  // READONLY, DIRECTORY and REPARSE_POINT (a link to a folder, beside DIRECTORY) as they apply, else NORMAL.
  // A link to a file counts as that file. INVALID_FILE_ATTRIBUTES on failure, and for a link that leads
  // nowhere.
  [[nodiscard]] virtual uint32_t GetFileAttributesA(std::string_view path) = 0;

  // ERROR_ALREADY_EXISTS where there is a folder or a file of that name, in any case.
  [[nodiscard]] virtual bool CreateDirectoryA(std::string_view path) = 0;
  // The same, for the owner alone.
  [[nodiscard]] virtual bool CreatePrivateDirectory(std::string_view path) = 0;
  // An empty folder, or a link to a folder, whose folder stays.
  [[nodiscard]] virtual bool RemoveDirectoryA(std::string_view path) = 0;
  // Not a read-only file, nor a folder. Of a link, the link goes.
  [[nodiscard]] virtual bool DeleteFileA(std::string_view path) = 0;

  // Gives `target` the permission bits of `source`, and its owner the right to write. For temporary copies.
  [[nodiscard]] virtual bool CopyPermissions(std::string_view source, std::string_view target) = 0;

  // The system's temporary path with its trailing backslash; empty on failure.
  [[nodiscard]] virtual std::string GetTempPathA() = 0;

  // The path with every component spelled as on disk, as far as it exists; what does not exist stays as
  // given. A path in which nothing is to be spelled otherwise comes back as it is.
  [[nodiscard]] virtual std::string GetLongPathNameA(std::string_view path) = 0;

  // While on, folders may be held open from one operation to the next, for the sake of speed. Off at first.
  // Switching it off closes them, and all that FlushWritten would bring to the disk, which is left to the
  // system then.
  virtual void HoldFolders(bool /*hold*/) {}

  // Brings everything that was written since the last call to the disk, with the names under which it stands:
  // through this object, and on the host through any other. Nobody may be writing meanwhile. Reports also
  // what only came to light when one of the files was closed. After a failure it is open how much of it is
  // there.
  [[nodiscard]] virtual bool FlushWritten() = 0;
};

// The file system in force on this thread: the host's own unless an override is alive. The host's own is for
// one thread; another one needs another object, which it puts in force for itself.
TFileSystem& FileSystem();
bool IsHostFileSystem();
[[nodiscard]] std::unique_ptr<TFileSystem> AnotherHostFileSystem();

// Puts `replacement` in force on this thread for its own lifetime. Overrides nest; `replacement` is not
// owned.
class TFileSystemOverride {
 public:
  explicit TFileSystemOverride(TFileSystem& replacement);
  ~TFileSystemOverride();
  TFileSystemOverride(const TFileSystemOverride&) = delete;
  TFileSystemOverride& operator=(const TFileSystemOverride&) = delete;

 private:
  TFileSystem* FPrevious;
};

}  // namespace win
