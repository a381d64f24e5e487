// A temporary folder for the program's own files, deleted with all that is in it.
#pragma once

#include <string>

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
};

}  // namespace cli
