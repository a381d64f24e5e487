// The replacement engine: converts a set of Delphi units and the form files that they name, and restores
// everything from an undo file.
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
// original is backed up. When all files are done, the changed versions are copied over the originals in one
// last step. A failure before that step leaves every original as it was.
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

namespace mig {

class TComponentReplacer : public TRunHooks {
 public:
  // `oldUnit` is the unit to look for in uses clauses, ignoring case; `newUnits` is inserted after it.
  // `options` are not owned and must outlive the replacer.
  TComponentReplacer(const TFormParserClass& parserClass, std::string_view oldUnit, std::string_view newUnits,
                     TReplaceOptions& options);
  virtual ~TComponentReplacer();
  TComponentReplacer(const TComponentReplacer&) = delete;
  TComponentReplacer& operator=(const TComponentReplacer&) = delete;

  // Replaces `oldClass` by `newClass` from now on. Must not be called after the first run.
  void AddClass(std::string_view oldClass, std::string_view newClass) {
    FClasses.AddClass(oldClass, newClass);
  }

  // Completes the files of further runs. `completion` must outlive the runs; null switches it off.
  void SetCompletion(const IFileCompletion* completion) {
    FConverter.SetCompletion(completion);
    FOtherConverter.SetCompletion(completion);
  }
  const TClassMap& Classes() const { return FClasses; }

  // Runs a replacement with the options. Returns True if it succeeded, and False if a changed file could not
  // be copied over its original; the undo file then restores the others. Every other failure is an exception.
  // All originals are unchanged then, unless it is about writing the undo file, which comes last. The
  // temporary folder is gone in every case.
  //
  // With Options().Policy.Strict a run may be refused before it makes anything (EWayBack, ERunIsBusy), or end
  // before the first original is replaced (EBackupFailed, EFileEdited). If it ends later, a journal remains in
  // the backup folder, from which Restore restores.
  [[nodiscard]] bool Replace();

  // Does what Replace does up to the first original, in memory: makes no file or folder and touches none. OnConverted
  // gets every file with its new bytes. Raises what Replace raises about sources.
  void Preview();

  // Collects findings from now on, for OnConverted. `names` must outlive the replacer.
  void CollectFindings(const TOldNames& names);

  // Copies every backup that the undo file lists over its original. Returns False if the list is empty or a
  // backup is missing; no file was touched then. Returns False also if a copy failed; the files before it are
  // restored then. Raises rtl::EFOpenError or rtl::EReadError if the undo file cannot be read.
  [[nodiscard]] bool Restore(std::string_view undoFile);

  // Returns what the last run left out: folders that could not be read; in strict runs also files that could
  // not be read, or, with KeepGoing, not be converted. Each was reported with OnWarning.
  const std::vector<TLeftOut>& LeftOut() const { return FLeftOut; }

  TReplaceOptions& Options() const { return FOptions; }
  // Returns the full name of the log of a run with the present options; empty if they want none.
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
};

}  // namespace mig
