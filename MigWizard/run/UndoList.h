// The record of a run: which file belongs where, and where its backup is. It becomes the undo file.
#pragma once

#include <string>
#include <string_view>

#include "rtl/text/StringList.h"

namespace mig {

class TUndoList {
 public:
  // Adds a file, or gives it another backup. Both are full Windows paths. Returns False if the file was
  // there.
  bool Add(const std::string& fileName, const std::string& backupName);

  bool Empty() const { return FLines.Count() == 0; }

  // Writes the undo file, a full Windows path. Raises the exceptions of rtl::TFileStream.
  void Save(const std::string& undoFile) const { FLines.SaveToFile(undoFile); }

  // Writes the undo file in one step, and brings it to the disk. Does not write through a link. After a
  // failure a file of that name is as it was. Raises as Save does.
  void SaveToDisk(const std::string& undoFile) const;

  // Returns the first line from which a restore cannot tell the two names; empty if there is none.
  const std::string& FirstAmbiguousLine() const { return FAmbiguousLine; }

 private:
  rtl::TStringList FLines;  // original=backup, in the order of the backups
  std::string FAmbiguousLine;
};

// Returns True if an undo file can list the file: its name holds no "=" and no line end, nor does the backup's
// name hold a line end.
bool CanBeListed(std::string_view fileName, std::string_view backupName);

// Renames a file of the run to `target`, in one step, and brings the name to the disk. Raises
// rtl::EFCreateError; both files are as they were then, unless only the disk failed.
void MoveToDisk(const std::string& source, const std::string& target);

}  // namespace mig
