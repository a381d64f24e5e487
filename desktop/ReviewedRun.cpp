#include "desktop/ReviewedRun.h"

#include <algorithm>
#include <exception>
#include <set>
#include <utility>
#include <vector>

#include "MigWizard/run/FileUtils.h"
#include "MigWizard/run/Restore.h"
#include "MigWizard/run/UndoFiles.h"
#include "MigWizard/run/UndoState.h"
#include "rtl/text/Exceptions.h"
#include "rtl/text/Files.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"
#include "win/paths/FileNames.h"

namespace desktop {

namespace {

// Calls `read` with a file system of its own, because that of the main thread is not for others.
template <class TRead>
TReviewedRun Read(const TRead& read) {
  TReviewedRun run;
  try {
    const std::unique_ptr<win::TFileSystem> fileSystem = win::AnotherHostFileSystem();
    const win::TFileSystemOverride inForce(*fileSystem);
    read(run);
  } catch (const std::exception& error) {
    run = {};
    run.Failure = error.what();
  }
  return run;
}

std::shared_ptr<TReviewMarks> MarksIn(const std::string& backupDir) {
  return std::make_shared<TReviewMarks>(backupDir.empty() ? std::string()
                                                          : mig::JoinPath(backupDir, kReviewMarksName));
}

std::vector<TReviewSet::TVersions> ChangesOf(const mig::TRestorePlan& plan) {
  std::vector<TReviewSet::TVersions> files;
  std::set<std::string> known;  // of several backups of a file, the first one is its own
  for (const mig::TRestoreLine& line : plan.Lines()) {
    if (!known.insert(win::UpperFileName(line.Original)).second) continue;
    std::string before = rtl::ReadFile(line.Backup);
    std::string after = rtl::FileExists(line.Original) ? rtl::ReadFile(line.Original) : std::string();
    if (before != after) files.push_back({line.Original, std::move(before), std::move(after)});
  }
  return files;
}

// Returns True if not all files are as their backups, as they are after a restore.
bool IsInForce(const mig::TRestorePlan& plan) {
  return std::any_of(plan.Lines().begin(), plan.Lines().end(), [](const mig::TRestoreLine& line) {
    return !rtl::FileExists(line.Original) || rtl::ReadFile(line.Original) != rtl::ReadFile(line.Backup);
  });
}

}  // namespace

TReviewedRun ReadRun(TRunRecord record, const std::string& backupDir, const TReportPtr& report) {
  return Read([&](TReviewedRun& run) {
    std::vector<TReviewSet::TVersions> files = record.TakeChanges();
    const bool hasBackups = !backupDir.empty() && !files.empty();
    run.Log = record.Log();
    run.Set = std::make_shared<TReviewSet>(std::move(files), report ? report->Run.Folder : std::string());
    run.Marks = MarksIn(hasBackups ? backupDir : std::string());
    run.Marks->SetFolder(run.Set->Folder());
    for (const TReviewFile& file : run.Set->Files())
      run.Marks->Set(TReviewMarks::TKind::Reviewed, file.Path, false);
    run.Report = report;
    if (hasBackups && report && !KeepReport(*report, mig::UndoFileOf(backupDir)))
      run.Warning = backupDir + ": the findings cannot be kept for a later review.";
  });
}

TReviewedRun ReadEarlierRun(const std::string& undoFile) {
  return Read([&](TReviewedRun& run) {
    mig::TRestorePlan plan;
    plan.Add(undoFile);
    if (plan.Lines().empty()) throw rtl::Exception("The undo file \"" + undoFile + "\" lists nothing.");
    run.Marks = MarksIn(rtl::ExtractFileDir(undoFile));
    run.Set = std::make_shared<TReviewSet>(ChangesOf(plan), run.Marks->Folder());
    run.Marks->SetFolder(run.Set->Folder());
    run.Report = ReadKeptReport(undoFile);
    run.IsEarlier = true;
  });
}

TReviewedRun ReadLastFindings(const std::string& folder) {
  return Read([&](TReviewedRun& run) {
    const std::vector<std::string> undoFiles = mig::FindUndoFiles(folder);
    const TReportPtr report = undoFiles.empty() ? nullptr : ReadKeptReport(undoFiles.front());
    if (!report) return;
    mig::TRestorePlan plan;
    plan.Add(undoFiles.front());
    if (!IsInForce(plan)) return;
    run.Report = report;
    run.Marks = MarksIn(rtl::ExtractFileDir(undoFiles.front()));
    run.IsEarlier = true;
    run.UndoFile = undoFiles.front();
  });
}

TReviewSetPtr ReadChange(const std::string& undoFile, const std::string& fileName) {
  return Read([&](TReviewedRun& run) {
           mig::TRestorePlan plan;
           plan.Add(undoFile);
           plan.KeepOnly([&](std::string_view original) {
             return win::UpperFileName(original) == win::UpperFileName(fileName);
           });
           run.Set = std::make_shared<TReviewSet>(ChangesOf(plan), std::string_view());
         })
      .Set;
}

}  // namespace desktop
