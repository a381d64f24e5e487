// The changes of a run that ended before this program was started, from its undo file: the backups against the
// present files.
//
//   const TReviewSetPtr set = ReadEarlierRun("C:\\App\\RBackup\\RExpert.reu", "");
#pragma once

#include <string>

#include "desktop/ReviewSet.h"

namespace desktop {

// Returns the files of an undo file or a journal, a full Windows path, that are not as their backups. A file that no
// longer exists is empty in the new version. `folder` is that of TReviewSet. May be called on any thread. Raises
// rtl::EFOpenError or rtl::EReadError if the undo file or a backup cannot be read, and rtl::Exception if it lists
// nothing.
TReviewSetPtr ReadEarlierRun(const std::string& undoFile, const std::string& folder);

}  // namespace desktop
