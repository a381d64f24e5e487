// Tracks the files that were written but not flushed to the disk yet.
#pragma once

#include <mutex>
#include <set>
#include <string>

#include "win/windows/WindowsErrors.h"

namespace win {

// Flushes an open file. On failure returns false, with the last error set.
[[nodiscard]] bool FlushFile(HANDLE file);

// Flushes the names in a folder, a full path. Succeeds on volumes that cannot do that: the system writes
// the names of NTFS through a journal, in order. On failure returns false, with the last error set.
[[nodiscard]] bool FlushFolderNames(const std::wstring& folder);

class TWrittenFiles {
 public:
  // Returns the object for all files that the process writes, on any thread.
  static TWrittenFiles& OfProcess();

  // Notes that the file at a full path was written or is about to be. A read-only file could not be opened
  // to be flushed: flush it instead before it becomes read-only.
  void Note(const std::wstring& full);

  // The same for a file at a full path that is open for writing, until Closed is called before the handle is
  // closed. While others may not write to it, the file can be flushed through this handle only.
  void NoteOpen(HANDLE file, const std::wstring& full);
  // Records that the handle is about to be closed, and notes its file if NoteOpen was called since the last
  // Flush.
  void Closed(HANDLE file, const std::wstring& full);

  // Flushes all noted files and clears the list. Files that no longer exist are passed over. On failure
  // returns false, with the last error set; it is unknown how much was written.
  [[nodiscard]] bool Flush();

  // Clears the list.
  void Discard();

 private:
  std::mutex FMutex;  // guards the members below
  std::set<std::wstring> FFiles;
  std::set<HANDLE> FOpen;
};

}  // namespace win
