// Reads the data of a run's review: after the run itself, and at any later time from its undo file.
//
//   const TReviewedRun run = ReadEarlierRun("C:\\App\\RBackup\\RExpert.reu");
//   if (run.Failure.empty()) Show(*run.Set, *run.Marks);
//
// The functions use a file system of their own, so they may be called on any thread. They raise nothing.
#pragma once

#include <memory>
#include <string>

#include "desktop/ReviewMarks.h"
#include "desktop/ReviewSet.h"
#include "desktop/RunRecord.h"
#include "desktop/RunReport.h"

namespace desktop {

struct TReviewedRun {
  TReviewSetPtr Set;  // null if only the findings were read
  std::shared_ptr<TReviewMarks> Marks;
  TReportPtr Report;  // null if it is not known what the run left
  bool IsEarlier = false;
  std::string UndoFile;  // full Windows path; set if only the findings were read
  std::string Log;       // UTF-8
  std::string Warning;   // for the user; empty if there is none
  std::string Failure;   // why the run cannot be shown; if it is not empty, nothing else is set
};

// Reads the files and the log of a run that has just ended. `report` is null for a restore, and `backupDir`,
// a full Windows path, is empty without backups. If there are any, the report is kept beside them, and no
// file counts as reviewed.
TReviewedRun ReadRun(TRunRecord record, const std::string& backupDir, const TReportPtr& report);

// Reads the files of an undo file or a journal, a full Windows path, that are not as their backups, and the
// report and the marks beside it. A file that no longer exists is empty in the new version.
TReviewedRun ReadEarlierRun(const std::string& undoFile);

// Reads the report and the marks of the last run in this folder, a full Windows path. Sets nothing but
// perhaps Failure if no report of it was kept, or all of its files are as before it.
TReviewedRun ReadLastFindings(const std::string& folder);

// Reads a single file of an undo file; both are full Windows paths. The set is empty if the file is as its
// backup or is not listed, and null if it cannot be read.
TReviewSetPtr ReadChange(const std::string& undoFile, const std::string& fileName);

}  // namespace desktop
