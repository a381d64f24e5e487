// A scope in which the file system may keep folders open, for speed.
#pragma once

#include "win/FileSystem.h"

namespace mig {

// Call TFileSystem::FlushWritten before the end of the scope, which discards the list of files to flush.
class THeldFolders {
 public:
  THeldFolders() { win::FileSystem().HoldFolders(true); }
  ~THeldFolders() { win::FileSystem().HoldFolders(false); }
  THeldFolders(const THeldFolders&) = delete;
  THeldFolders& operator=(const THeldFolders&) = delete;
};

}  // namespace mig
