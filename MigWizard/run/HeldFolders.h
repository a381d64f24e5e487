// A scope in which the file system may keep folders open, for speed.
#pragma once

#include "win/FileSystem.h"

namespace mig {

// The end of the scope discards what TFileSystem::FlushWritten has yet to flush to the disk: flush before.
class THeldFolders {
 public:
  THeldFolders() { win::FileSystem().HoldFolders(true); }
  ~THeldFolders() { win::FileSystem().HoldFolders(false); }
  THeldFolders(const THeldFolders&) = delete;
  THeldFolders& operator=(const THeldFolders&) = delete;
};

}  // namespace mig
