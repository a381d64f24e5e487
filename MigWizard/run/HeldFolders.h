// A block during which the file system may hold folders open, for speed.
#pragma once

#include "win/FileSystem.h"

namespace mig {

// Ending the block drops what TFileSystem::FlushWritten would still bring to the disk: flush before.
class THeldFolders {
 public:
  THeldFolders() { win::FileSystem().HoldFolders(true); }
  ~THeldFolders() { win::FileSystem().HoldFolders(false); }
  THeldFolders(const THeldFolders&) = delete;
  THeldFolders& operator=(const THeldFolders&) = delete;
};

}  // namespace mig
