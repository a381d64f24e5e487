#include "MigWizard/run/Restore.h"

#include <algorithm>
#include <optional>
#include <unordered_map>

#include "MigWizard/run/FileUtils.h"
#include "MigWizard/run/Finally.h"
#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/run/WorkQueue.h"
#include "rtl/text/Streams.h"
#include "rtl/text/StringList.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"
#include "win/paths/FileNames.h"

namespace mig {
namespace {

bool IsJournal(std::string_view undoFile) {
  return rtl::SameText(rtl::ExtractFileName(undoFile), SJournalFileName);
}

std::string LastReason() {
  return win::SysErrorMessage(win::GetLastError());
}

bool SameFileName(std::string_view left, std::string_view right) {
  return win::UpperFileName(left) == win::UpperFileName(right);
}

bool IsMigrated(std::string_view fileName) {
  constexpr std::string_view kExtensions[] = {".pas", ".dpr", ".dfm", ".nfm"};
  return std::any_of(std::begin(kExtensions), std::end(kExtensions),
                     [extension = rtl::ExtractFileExt(fileName)](std::string_view known) {
                       return rtl::SameText(extension, known);
                     });
}

// Returns True if the backup is at or below the folder of the undo file. The two may be spelled differently:
// a folder is that of the undo file if it contains the undo file.
bool IsBelowUndoFile(const std::string& backup, const std::string& undoFile) {
  const std::string name = rtl::ExtractFileName(undoFile);
  const auto undoStamp = win::GetFileStamp(undoFile);
  std::string folder = rtl::ExtractFileDir(ResolveDots(backup));
  while (undoStamp) {
    const auto stamp = win::GetFileStamp(JoinPath(folder, name));
    if (stamp && stamp->Volume == undoStamp->Volume && stamp->Identity == undoStamp->Identity) return true;
    std::string above = rtl::ExtractFileDir(folder);
    if (above.size() >= folder.size()) break;
    folder = std::move(above);
  }
  return false;
}

bool HasNamesOfARun(const TRestoreLine& line) {
  return IsMigrated(line.Original) &&
         SameFileName(rtl::ExtractFileName(line.Backup), BackupFileName(rtl::ExtractFileName(line.Original)));
}

bool HaveSameContents(const std::string& left, const std::string& right) {
  constexpr uint16_t kMode = rtl::fmOpenRead | rtl::fmShareDenyNone;
  rtl::TFileStream leftFile(left, kMode), rightFile(right, kMode);
  return leftFile.Size() == rightFile.Size() && leftFile.ReadToEnd() == rightFile.ReadToEnd();
}

// `present` is the file that holds the original's contents when the line is executed.
bool IsEdited(const TRestoreLine& line, const std::string& present) {
  const auto stamp = win::GetFileStamp(present);
  const auto undoStamp = win::GetFileStamp(line.UndoFile);
  if (!stamp || (undoStamp && stamp->Modified <= undoStamp->Modified)) return false;
  return !HaveSameContents(present, line.Backup);
}

}  // namespace

void TRestorePlan::Add(std::string_view undoFile) {
  rtl::TStringList list;
  list.LoadFromFile(undoFile);
  if (IsJournal(undoFile)) FJournals.emplace_back(undoFile);
  for (int i = 0; i < list.Count(); ++i) {
    const std::string_view name = list.Names(i);
    FLines.push_back({std::string(name), std::string(list.Values(name)), list[i], std::string(undoFile)});
  }
}

void TRestorePlan::KeepOnly(const std::function<bool(std::string_view original)>& isWanted) {
  std::erase_if(FLines, [&](const TRestoreLine& line) {
    if (isWanted(line.Original)) return false;
    std::erase(FJournals, line.UndoFile);
    return true;
  });
}

void TRestorePlan::Check() {
  std::unordered_map<std::string, std::string> restored;  // upper-cased original -> the backup copied over it
  for (TRestoreLine& line : FLines) {
    const auto [place, isFirst] = restored.try_emplace(win::UpperFileName(line.Original), line.Original);
    if (!HasNamesOfARun(line)) {
      line.Verdict = TRestoreVerdict::Foreign;
    } else if (!rtl::FileExists(line.Backup)) {
      // Backups that were moved are missing, and not foreign: this comes before the next check.
      line.Verdict = TRestoreVerdict::NoBackup;
    } else if (!IsBelowUndoFile(line.Backup, line.UndoFile)) {
      line.Verdict = TRestoreVerdict::Foreign;
    } else {
      line.Verdict = IsEdited(line, place->second) ? TRestoreVerdict::Edited : TRestoreVerdict::Restorable;
    }
    place->second = line.Backup;
  }
}

bool TRestorePlan::CopyAll(const TProgress& onProgress, const TWarning& onWarning) const {
  int done = 0;
  for (const TRestoreLine& line : FLines) {
    if (onProgress) onProgress(done, line);
    if (!win::CopyFileA(line.Backup, line.Original, false)) {
      onWarning(rtl::Format("\"%s\" could not be restored, nor were the files after it in the undo file. %s",
                            {line.Original, LastReason()}));
      return false;
    }
    ++done;
  }
  return true;
}

// Flushes on a worker, because this can take long on a slow disk.
bool TRestorePlan::Flush(const TWarning& onWarning, const std::function<void()>& onFlushing) {
  std::string reason;
  bool succeeded = false;
  TWorkQueue().RunOnWorker(
      [&] {
        succeeded = win::FileSystem().FlushWritten();
        if (!succeeded) reason = LastReason();
      },
      [&] {
        if (onFlushing) onFlushing();
      });
  if (!succeeded)
    onWarning(rtl::Format("The files are restored, but they may not all be on the disk. %s", {reason}));
  return succeeded;
}

// Deletes a journal only after the files have been flushed to the disk.
bool TRestorePlan::DeleteJournals(const TWarning& onWarning) const {
  bool succeeded = true;
  for (const std::string& journal : FJournals) {
    if (rtl::DeleteFile(journal) && win::FileSystem().FlushFolder(rtl::ExtractFileDir(journal))) continue;
    onWarning(rtl::Format("The files are restored, but the journal \"%s\" could not be deleted. %s",
                          {journal, LastReason()}));
    succeeded = false;
  }
  return succeeded;
}

bool TRestorePlan::Execute(const TProgress& onProgress, const TWarning& onWarning,
                           const std::function<void()>& onFlushing) const {
  const TWarning warn = onWarning ? onWarning : [](std::string_view) {};
  if (FLines.empty()) {
    warn("The undo file lists nothing.");
    return false;
  }
  for (const TRestoreLine& line : FLines) {
    if (rtl::FileExists(line.Backup)) continue;
    warn(rtl::Format("There is no backup for this line of the undo file, so nothing was restored: %s",
                     {line.Text}));
    return false;
  }
  const TFinally forgetWritten([] { win::FileSystem().ForgetWritten(); });
  return CopyAll(onProgress, warn) && Flush(warn, onFlushing) && DeleteJournals(warn);
}

}  // namespace mig
