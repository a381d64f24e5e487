#include "MigWizard/run/UndoList.h"

#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"

namespace mig {
namespace {

constexpr char kNewFile[] = ".new";

[[noreturn]] void FailToCreate(const std::string& fileName) {
  throw rtl::EFCreateError(
      rtl::Format("Cannot create file \"%s\". %s", {fileName, win::SysErrorMessage(win::GetLastError())}));
}

}  // namespace

bool TUndoList::Add(const std::string& fileName, const std::string& backupName) {
  const bool isNew = FLines.Values(fileName).empty();
  FLines.SetValue(fileName, backupName);
  if (FAmbiguousLine.empty() && !CanBeListed(fileName, backupName))
    FAmbiguousLine = std::string(fileName).append("=").append(backupName);
  return isNew;
}

void TUndoList::SaveToDisk(const std::string& undoFile) const {
  const std::string newFile = undoFile + kNewFile;
  try {
    {
      rtl::TFileStream file(newFile, rtl::fmCreateOwn);
      file.Write(FLines.Text());
      if (!file.Handle().Flush()) FailToCreate(newFile);
    }
    MoveToDisk(newFile, undoFile);
  } catch (...) {
    rtl::DeleteFile(newFile);
    throw;
  }
}

bool CanBeListed(std::string_view fileName, std::string_view backupName) {
  return fileName.find_first_of("=\r\n") == std::string_view::npos &&
         backupName.find_first_of("\r\n") == std::string_view::npos;
}

void MoveToDisk(const std::string& source, const std::string& target) {
  if (!win::MoveFileReplacing(source, target) || !win::FlushFolder(rtl::ExtractFileDir(target)))
    FailToCreate(target);
}

}  // namespace mig
