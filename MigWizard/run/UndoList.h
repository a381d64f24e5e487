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

  // Returns the first line from which a restore cannot tell the two names, because one of them holds a "=" or
  // a line end; empty if there is none.
  std::string FirstAmbiguousLine() const;

 private:
  rtl::TStringList FLines;  // original=backup, in the order of the backups
};

}  // namespace mig
