#include "rtl/text/Files.h"

#include <utility>

#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"

namespace rtl {

std::string ReadFile(std::string_view fileName) {
  return TFileStream(fileName, fmOpenRead | fmShareDenyNone).ReadToEnd();
}

bool CreateFolders(std::string_view folder) {
  if (DirectoryExists(folder)) return true;
  const std::string above = ExtractFileDir(folder);
  if (!above.empty() && above != folder && !CreateFolders(above)) return false;
  return CreateDir(folder) || (win::GetLastError() == win::ERROR_ALREADY_EXISTS && DirectoryExists(folder));
}

TFolderEntries::TFolderEntries(std::string_view folder) : FFolder(folder) {
  if (!FFolder.empty() && !FFolder.ends_with('\\')) FFolder += '\\';
  FWalk = win::FindFirstFileA(FFolder + "*.*", FData);
  FHasEntry = FWalk != nullptr;
  if (FWalk) {
    FUnnamed = FWalk->Unnamed();
  } else {
    FError = win::GetLastError();
  }
}

bool TFolderEntries::Next() {
  if (!FWalk) return false;
  do {
    if (!std::exchange(FHasEntry, false) && !win::FindNextFileA(*FWalk, FData)) {
      FError = win::GetLastError();
      FWalk.reset();
      return false;
    }
  } while (FData.FileName == "." || FData.FileName == "..");
  return true;
}

bool TFolderEntries::IsComplete() const {
  return FError == win::ERROR_NO_MORE_FILES;
}

}  // namespace rtl
