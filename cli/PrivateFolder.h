// A temporary folder for the program's own files, deleted with its contents. It is locked as long as it is
// in use, so that no other process takes it for an abandoned one.
#pragma once

#include <memory>
#include <string>

#include "win/FileSystem.h"

namespace cli {

class TPrivateFolder {
 public:
  // Raises rtl::EFCreateError.
  TPrivateFolder();
  ~TPrivateFolder();
  TPrivateFolder(const TPrivateFolder&) = delete;
  TPrivateFolder& operator=(const TPrivateFolder&) = delete;

  const std::string& Path() const { return FPath; }  // full Windows path

 private:
  std::string FPath;
  std::unique_ptr<win::TFileLock> FLock;
};

}  // namespace cli
