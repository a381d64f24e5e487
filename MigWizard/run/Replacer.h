// The replacement engine: converts a set of Delphi units and the form files that they name, and restores the
// originals from an undo file.
//
//   TReplaceOptions options("BDE/IBX");
//   options.Dest = sdFolder;
//   options.Directory = "C:\\App";
//   options.BackupDir = "C:\\App\\RBackup";
//   TComponentReplacer replacer(formParserClass, "DBTables", ", KVADataSet", options);
//   replacer.AddClass("TQuery", "TKVAQuery");
//   const bool replaced = replacer.Replace();
//
// Nothing is rewritten in place. Each changed file is first written to a private temporary folder, and its
// original is backed up. After all files are done, the last step copies the changed versions over the
// originals. A failure before that step leaves every original unchanged.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "MigWizard/form/FormParser.h"
#include "MigWizard/passes/ClassMap.h"
#include "MigWizard/passes/FileConversion.h"
#include "MigWizard/run/FileUtils.h"
#include "MigWizard/run/ReplaceOptions.h"
#include "MigWizard/run/RunErrors.h"
#include "MigWizard/run/RunHooks.h"
#include "MigWizard/run/RunSelection.h"

namespace mig {

class TRestorePlan;

class TComponentReplacer : public TRunHooks {
 public:
  // `oldUnit` is the unit to find in uses clauses, ignoring case; `newUnits` is inserted after it.
  // `options` are not owned and must outlive the replacer.
  TComponentReplacer(const TFormParserClass& parserClass, std::string_view oldUnit, std::string_view newUnits,
                     TReplaceOptions& options);
  virtual ~TComponentReplacer();
  TComponentReplacer(const TComponentReplacer&) = delete;
  TComponentReplacer& operator=(const TComponentReplacer&) = delete;

  // Adds `oldClass` to the classes to replace, by `newClass`. Must not be called after the first run.
  void AddClass(std::string_view oldClass, std::string_view newClass) {
    FClasses.AddClass(oldClass, newClass);
  }

  // Completes files in all following runs. `completion` must outlive the runs; null disables it.
  void SetCompletion(const IFileCompletion* completion) {
    FConverter.SetCompletion(completion);
    FOtherConverter.SetCompletion(completion);
  }
  const TClassMap& Classes() const { return FClasses; }

  // Runs a replacement with the options. Returns True on success, and False if a changed file could not be
  // copied over its original; the undo file then restores the others. Raises an exception for every other
  // failure. All originals are unchanged then, unless writing the undo file failed, which comes last. The
  // temporary folder is deleted in every case.
  //
  // With Options().Policy.Strict a run may be refused before it makes anything (EBackupsExist, ERunIsBusy),
  // or end before the first original is replaced (EBackupFailed, EFileEdited). If it fails later, a journal
  // remains in the backup folder, from which Restore can restore.
  [[nodiscard]] bool Replace();

  // Does everything that Replace does before it replaces the first original, in memory, without creating or
  // changing a file or folder. Calls OnConverted with the new bytes of every file. `plan`, unless null, gets
  // the files and their edits, as a list to select from; it must be empty. Raises the exceptions of Replace
  // for sources.
  void Preview(TRunPlan* plan = nullptr);

  // Limits all following runs to a selection; null: to none. Files and edits that are left out keep every
  // byte, and get neither backups nor findings about their conversion. `selection` must outlive the runs. A
  // run with a selection raises EFileEdited, before the first original is replaced, if a file is not as it
  // was when the selection's plan was made, or was not there.
  void SetSelection(const TRunSelection* selection) { FSelection = selection; }

  // Collects findings in all following runs, for OnConverted. `names` must outlive the replacer.
  void CollectFindings(const TOldNames& names, TFindingDetail detail = TFindingDetail::Whole);

  // Copies every backup that the undo file lists over its original. Returns False if the list is empty or a
  // backup is missing; no file is changed then. Also returns False if a copy failed; the files before it are
  // restored then. Raises rtl::EFOpenError or rtl::EReadError if the undo file cannot be read.
  [[nodiscard]] bool Restore(std::string_view undoFile);
  // Restores the lines of a plan, and reports as the other Restore does.
  [[nodiscard]] bool Restore(const TRestorePlan& plan);

  // Returns the files and folders that the last run left out: folders that could not be read; in strict runs
  // also files that could not be read or, with KeepGoing, not be converted. Each was reported with OnWarning.
  const std::vector<TLeftOut>& LeftOut() const { return FLeftOut; }

  // Returns the names to look for in findings, or null if there are none. Not owned.
  virtual const TOldNames* OldNames() { return nullptr; }

  TReplaceOptions& Options() const { return FOptions; }
  // Returns the full name of the log of a run with the current options, or an empty string if WriteLog is
  // False, and during a restore.
  std::string LogFileName() const;

 protected:
  // Returns the text that replaces a class name in a unit's source. Called by several threads at a time.
  virtual std::string GetReplacement(std::string_view oldClass, std::string_view newClass);

 private:
  bool ReplaceFiles();

  TClassMap FClasses;
  TLogWriter FLog;
  std::string FOldUnit;  // in upper case
  std::string FNewUnits;
  TFileConverter FConverter, FOtherConverter;  // both work at the same time
  TReplaceOptions& FOptions;
  std::vector<TLeftOut> FLeftOut;
  const TRunSelection* FSelection = nullptr;
  bool FIsRestoring = false;
};

}  // namespace mig
