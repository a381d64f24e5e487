// The record of a run: the changed files and their backups. It is saved as the undo file.
#pragma once

#include <string>
#include <string_view>

#include "rtl/text/StringList.h"

namespace mig {

class TUndoList {
 public:
  // Adds a file, or replaces its backup. Both are full Windows paths. Returns False if the file was in the
  // list.
  bool Add(const std::string& fileName, const std::string& backupName);

  bool Empty() const { return FLines.Count() == 0; }

  // Writes the undo file, a full Windows path. Raises the exceptions of rtl::TFileStream.
  void Save(const std::string& undoFile) const { FLines.SaveToFile(undoFile); }

  // Writes the undo file in one step and flushes it to the disk. Does not write through a link. Raises the
  // exceptions of Save; an existing file is unchanged then.
  void SaveToDisk(const std::string& undoFile) const;

  // Returns the first line that a restore cannot split into the two names, or an empty string.
  const std::string& FirstAmbiguousLine() const { return FAmbiguousLine; }

 private:
  rtl::TStringList FLines;  // original=backup, in the order of the backups
  std::string FAmbiguousLine;
};

// Returns True if an undo file can list the file: `fileName` contains no "=" and neither name has a line end.
bool CanBeListed(std::string_view fileName, std::string_view backupName);

// Renames a file of the run to `target` in one step, and flushes the name to the disk. On failure raises
// rtl::EFCreateError, and both files are unchanged, unless only the flush failed.
void MoveToDisk(const std::string& source, const std::string& target);

}  // namespace mig
