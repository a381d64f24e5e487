// The file functions of Windows that the system uses, as one interface.
//
// Paths are Windows paths: UTF-8, with a backslash between components and an optional drive letter. The
// host's implementation (win/posix, win/windows) converts them to host names (win/paths/Drives.h) and follows
// Windows' rules for case, attributes and overwriting. win/FileApi.h has the same operations as free
// functions on the current file system; a test sets another one with TFileSystemOverride.
//
// Every operation reports failure by its result and sets GetLastError (win/Errors.h) to the reason. If
// memory runs out, operations raise std::bad_alloc.
//
//   if (!win::FileSystem().CopyFileA("C:\\Unit1.pas", "C:\\RBackup\\Unit1.~pas", false)) {
//     throw EFCreateError(win::SysErrorMessage(win::GetLastError()));
//   }
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace win {

inline constexpr uint32_t FILE_ATTRIBUTE_READONLY = 0x01;
inline constexpr uint32_t FILE_ATTRIBUTE_DIRECTORY = 0x10;
inline constexpr uint32_t FILE_ATTRIBUTE_NORMAL = 0x80;
// A link, combined with the attributes of its target.
inline constexpr uint32_t FILE_ATTRIBUTE_REPARSE_POINT = 0x400;
inline constexpr uint32_t INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF;

// How CreateFileA opens a file.
enum class TFileMode {
  OpenRead,  // an existing file, for reading
  Create,    // a new or emptied file, for reading and writing
  CreateOwn  // the same for one of the program's own files: see CreateFileA
};

// Identifies a file and the state of its contents: two equal stamps of one path mean that the path still
// names the same file, and that nobody has written to it between the two.
struct TFileStamp {
  uint64_t Volume = 0;
  uint64_t Identity = 0;  // of the file on its volume
  int64_t Size = 0;       // in bytes
  int64_t Modified = 0;   // last-write time, in nanoseconds since 1970

  friend bool operator==(const TFileStamp&, const TFileStamp&) = default;
};

// An open file. The destructor closes it. Reads and writes start at the file's position, counted in bytes
// from the start of the file, and advance it. A handle that was opened with CreateOwn holds the file
// exclusively until it is destroyed.
class TFileHandle {
 public:
  virtual ~TFileHandle() = default;
  // Reads up to `count` bytes. Returns the number of bytes read, 0 at the end of the file, -1 on failure.
  [[nodiscard]] virtual int64_t Read(void* buffer, size_t count) = 0;
  // Writes `count` bytes. On failure any number of them may have been written.
  [[nodiscard]] virtual bool Write(const void* buffer, size_t count) = 0;
  // Sets the position. It may lie after the end of the file.
  [[nodiscard]] virtual bool Seek(int64_t position) = 0;
  // Returns the file's length in bytes, -1 on failure. For a file open for reading this is the length at the
  // time of opening.
  [[nodiscard]] virtual int64_t Size() = 0;
  // Returns the file's stamp, or nullopt on failure. For a file open for reading this is the stamp at the
  // time of opening, so it never describes a state later than the contents read.
  [[nodiscard]] virtual std::optional<TFileStamp> Stamp() = 0;
  // Flushes the file's contents and its name to the disk. On failure it is unknown how much was written.
  [[nodiscard]] virtual bool Flush() = 0;
};

// An exclusive lock. The destructor releases it.
class TFileLock {
 public:
  virtual ~TFileLock() = default;
};

struct TFindData {
  std::string FileName;  // as on disk, without the folder
  uint32_t FileAttributes = 0;
};

// An entry of a folder that no Windows path can name.
struct TUnnamedEntry {
  std::string Name;       // as the host has it, in any bytes
  bool IsFolder = false;  // false for a link to a folder
  std::string Message;    // the line that the user got
};

// An open folder walk. The destructor closes it.
class TFindHandle {
 public:
  explicit TFindHandle(std::vector<TUnnamedEntry> unnamed = {}) : FUnnamed(std::move(unnamed)) {}
  virtual ~TFindHandle() = default;
  // Reads the next entry. Returns false after the last one, with ERROR_NO_MORE_FILES.
  [[nodiscard]] virtual bool Next(TFindData& data) = 0;
  // Returns the entries that the walk skips.
  const std::vector<TUnnamedEntry>& Unnamed() const { return FUnnamed; }

 private:
  std::vector<TUnnamedEntry> FUnnamed;
};

class TFileSystem {
 public:
  virtual ~TFileSystem() = default;

  // Opens a file. Returns null on failure. Only regular files are opened; a folder, pipe or device is
  // ERROR_ACCESS_DENIED, at once.
  //
  // `Create` empties an existing file and keeps the case of its name. A link to a file is that file. A
  // read-only file is ERROR_ACCESS_DENIED.
  //
  // `CreateOwn` differs in two ways. A link of that name is ERROR_ACCESS_DENIED, wherever it leads. And the
  // file is held: ERROR_SHARING_VIOLATION if another CreateOwn handle, of any process, holds it. Nothing is
  // emptied before it is held. Hosts with advisory locks keep out only CreateOwn, and on a volume without
  // locks the file is opened anyway.
  //
  // A file that was created or emptied remains when a later write fails.
  [[nodiscard]] virtual std::unique_ptr<TFileHandle> CreateFileA(std::string_view path, TFileMode mode) = 0;

  // Copies contents, last-write time and permission bits to the file `target`; a folder of that name is
  // ERROR_ACCESS_DENIED. An existing target keeps the case of its name, its owner and its access list; a link
  // is followed to the file that it names. A read-only target is ERROR_ACCESS_DENIED, the source itself
  // ERROR_SHARING_VIOLATION.
  //
  // The target is created or replaced in one step, by a temporary file in its folder that takes its name, so
  // nobody ever sees half a file under that name. After a failure the target is unchanged, the temporary file
  // is deleted, and GetLastError has the reason. The folder must be writable. A process that is
  // killed may leave a temporary file ("~kva...$$$"); the next one that replaces a file in the folder deletes
  // it, if it is certain that its owner no longer runs.
  //
  // After a power cut the target is as before or as copied if FlushWritten has succeeded since. Otherwise a
  // file may be empty on file systems that write names to the disk before contents. The source is not
  // touched.
  [[nodiscard]] virtual bool CopyFileA(std::string_view source, std::string_view target,
                                       bool failIfExists) = 0;

  // Replaces the contents of the file `path` by `bytes`, or creates the file. As CopyFileA, except that an
  // existing file keeps its permission bits, and that the last-write time is the present.
  [[nodiscard]] virtual bool ReplaceFileContents(std::string_view path, std::string_view bytes) = 0;

  // As CopyFileA over an existing file, which keeps its permission bits. The source may be gone afterwards.
  // If the file does not have the stamp `expected` when it is replaced, fails with ERROR_FILE_INVALID and
  // leaves it unchanged. Hosts that cannot exchange two files in one step check the stamp just before.
  [[nodiscard]] virtual bool CopyOverUnchanged(std::string_view source, std::string_view target,
                                               const TFileStamp& expected) = 0;

  // Copies to one of the program's own files, such as a backup. As CopyFileA with these differences:
  //  - A link named `target` is ERROR_ACCESS_DENIED. A read-only file of that name is replaced.
  //  - Nobody can read the copy who cannot read the source: it gets the source's permission bits, group and
  //    access list, and its owner where the process may set it. Where they cannot be set and the source is
  //    not readable by everybody, only the owner of the copy, who runs the program, can read it.
  [[nodiscard]] virtual bool CopyToOwnFile(std::string_view source, std::string_view target) = 0;

  // Renames the file `source` to `target`, on the same volume, in one step. A file named `target` is replaced
  // and keeps the case of its name; a link of that name is itself replaced. A folder, pipe or device named
  // `target`, or a read-only file, is ERROR_ACCESS_DENIED, and so is a source that is no regular file. After
  // a failure both are as they were.
  [[nodiscard]] virtual bool MoveFileReplacing(std::string_view source, std::string_view target) = 0;

  // Starts a walk over the entries of the folder in `pattern`, "FOLDER\*.*", and reads the first one.
  // Returns null on failure. The first entries are "." and "..". The others follow in NTFS' order: by
  // upper-cased name, compared by UTF-16 unit, then by exact name. The entries are read when the walk
  // starts; later changes of the folder have no effect.
  //
  // The attributes of an entry distinguish folders (DIRECTORY), links to folders (DIRECTORY and
  // REPARSE_POINT) and everything else (NORMAL). Use GetFileAttributesA for READONLY. An entry that no
  // Windows path can name is skipped, with one line for the user (win/Diagnostics.h), and is in
  // TFindHandle::Unnamed.
  [[nodiscard]] virtual std::unique_ptr<TFindHandle> FindFirstFileA(std::string_view pattern,
                                                                    TFindData& data) = 0;

  // Returns the attributes of a file or folder: READONLY, DIRECTORY and, of a link to a folder, REPARSE_POINT
  // as they apply, else NORMAL. A link to a file counts as that file. Returns INVALID_FILE_ATTRIBUTES on
  // failure and for a link that leads nowhere.
  [[nodiscard]] virtual uint32_t GetFileAttributesA(std::string_view path) = 0;

  // Returns the stamp of a file; of a link, that of the file it leads to. Returns nullopt on failure; a
  // folder, pipe or device is ERROR_ACCESS_DENIED.
  [[nodiscard]] virtual std::optional<TFileStamp> GetFileStamp(std::string_view path) = 0;

  // Locks a folder for as long as the returned object lives. Returns null on failure; ERROR_SHARING_VIOLATION
  // if somebody, in any process, holds the lock. The lock keeps out nothing but LockFolder. On a volume
  // without locks it always succeeds. On Windows, the lock of a folder on a network drive also keeps out
  // other computers. It is a file in the folder, which is deleted when the lock is released.
  [[nodiscard]] virtual std::unique_ptr<TFileLock> LockFolder(std::string_view path) = 0;

  // Creates a folder. ERROR_ALREADY_EXISTS if there is a folder or a file of that name, in any case.
  [[nodiscard]] virtual bool CreateDirectoryA(std::string_view path) = 0;
  // The same, with access for its owner alone.
  [[nodiscard]] virtual bool CreatePrivateDirectory(std::string_view path) = 0;
  // Removes an empty folder. Of a link to a folder, removes the link.
  [[nodiscard]] virtual bool RemoveDirectoryA(std::string_view path) = 0;
  // Deletes a file. Of a link, deletes the link. A read-only file or a folder is ERROR_ACCESS_DENIED.
  [[nodiscard]] virtual bool DeleteFileA(std::string_view path) = 0;

  // Sets the permission bits of `target` to those of `source`, plus write permission for its owner.
  [[nodiscard]] virtual bool CopyPermissions(std::string_view source, std::string_view target) = 0;

  // Returns the path for temporary files, with a trailing backslash; empty on failure.
  [[nodiscard]] virtual std::string GetTempPathA() = 0;

  // Returns the path with each component spelled as on disk. Components that do not exist stay as given.
  [[nodiscard]] virtual std::string GetLongPathNameA(std::string_view path) = 0;

  // Discards the list of what FlushWritten would flush. Call it when nobody will flush what was written.
  virtual void ForgetWritten() {}

  // Flushes everything that was written, copied or renamed since the last call to the disk, including the
  // names: through this object, and on the host through any other. No thread may be writing during the
  // call. Also reports failures that were only detected when one of the files was closed. On failure it is
  // unknown how much was written.
  [[nodiscard]] virtual bool FlushWritten() = 0;

  // Flushes the names in a folder to the disk, such as those that MoveFileReplacing and DeleteFileA
  // changed.
  [[nodiscard]] virtual bool FlushFolder(std::string_view path) = 0;
};

// Returns the current file system of this thread: the host's own unless a TFileSystemOverride is alive. Use
// it on this thread only.
TFileSystem& FileSystem();

// Returns whether the current file system of this thread is the host's own.
bool IsHostFileSystem();

// Returns another object for the host's files, for use on another thread. Defined in the host's folder.
[[nodiscard]] std::unique_ptr<TFileSystem> AnotherHostFileSystem();

// Makes `replacement` the current file system of this thread for its own lifetime. Overrides nest. Does not
// own `replacement`.
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
