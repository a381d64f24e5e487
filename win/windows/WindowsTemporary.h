// A file that is written under a temporary name in its target's folder and then takes the target's name.
#pragma once

#include <string>
#include <string_view>

#include "win/windows/WindowsErrors.h"

namespace win {

class TTemporaryFile {
 public:
  TTemporaryFile() = default;
  // Deletes the file unless it has taken another name.
  ~TTemporaryFile();
  TTemporaryFile(const TTemporaryFile&) = delete;
  TTemporaryFile& operator=(const TTemporaryFile&) = delete;

  // Creates the file in `folder`, a full path with a separator at its end. `access` may be null, for the
  // access that the folder passes on. On failure returns false, with the last error set. The name is short,
  // and has an extension that no run looks for.
  [[nodiscard]] bool Create(std::wstring_view folder, SECURITY_ATTRIBUTES* access);

  HANDLE Handle() const { return FFile.Get(); }
  const std::wstring& Path() const { return FPath; }  // full

  // Closes the file, which keeps its name.
  void Close() { FFile.Close(); }
  // Records that the file has another name now.
  void Release() { FPath.clear(); }

 private:
  THandle FFile;
  std::wstring FPath;  // empty if there is no file to delete
};

// Deletes the temporary files that processes of this computer which no longer run have left in a folder, a
// full path with a separator at its end. Reports nothing.
void SweepTemporaryFiles(std::wstring_view folder);

}  // namespace win
