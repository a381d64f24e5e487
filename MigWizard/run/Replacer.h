// The replacement engine: takes a set of Delphi units, and the form files that they name, from the first log
// line to the last file written; and puts everything back from an undo file.
//
// Nothing is rewritten in place. Every changed file is first made in a private temporary folder, and its
// original is backed up; when all files are done, the changed versions are copied over the originals in one
// last step. A failure before that step leaves every original as it was.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "MigWizard/form/FormParser.h"
#include "MigWizard/passes/ClassMap.h"
#include "MigWizard/passes/FileConversion.h"
#include "MigWizard/run/FileUtils.h"
#include "MigWizard/run/ReplaceOptions.h"
#include "rtl/text/Exceptions.h"
#include "rtl/text/StringList.h"

namespace mig {

class TFilesAhead;
class TTeam;

// A file of a run could not be converted. The message names the file, and what stands in it where that is
// known.
class EFileConversion : public rtl::Exception {
 public:
  EFileConversion(std::string_view fileName, std::string_view reason);
  const std::string& FileName() const { return FFileName; }

 private:
  std::string FFileName;
};

// Two files of a run, or two folders, would take one place in its folders.
class ETwinFiles : public rtl::Exception {
 public:
  ETwinFiles(const std::string& message, std::string_view first, std::string_view second)
      : Exception(message), FFirst(first), FSecond(second) {}
  const std::string& First() const { return FFirst; }
  const std::string& Second() const { return FSecond; }

 private:
  std::string FFirst, FSecond;
};

// Where a run stands.
struct TRunProgress {
  int Done = 0;               // files dealt with
  int Known = 0;              // files known by now; form files come in as their units are read
  std::string_view FileName;  // full Windows path of the file that comes next; empty when all are converted
};

class TComponentReplacer {
 public:
  // `oldUnit` is the unit that is looked for in uses clauses, ignoring case, and `newUnits` the text that
  // goes behind it. `options` are not owned, and must outlive the replacer.
  TComponentReplacer(const TFormParserClass& parserClass, std::string_view oldUnit, std::string_view newUnits,
                     TReplaceOptions& options);
  virtual ~TComponentReplacer();
  TComponentReplacer(const TComponentReplacer&) = delete;
  TComponentReplacer& operator=(const TComponentReplacer&) = delete;

  // Makes `oldClass` become `newClass`. For the time right after construction.
  void AddClass(std::string_view oldClass, std::string_view newClass) {
    FClasses.AddClass(oldClass, newClass);
  }

  // Runs a replacement with the options. True when it succeeded; False when some changed file could not be
  // copied over its original, which the undo file then restores all the same. Every other failure is an
  // exception: all originals are as they were then (but for a failure to write the undo file, which comes
  // last), and the temporary folder is gone.
  [[nodiscard]] bool Replace();

  // Copies every backup that the undo file lists over its original. False when the list is empty or a backup
  // is missing, and nothing was touched then; or when a copy failed, and those before it are restored. A file
  // that cannot be read raises.
  [[nodiscard]] bool Restore(std::string_view undoFile);

  TReplaceOptions& Options() const { return FOptions; }
  // The full name of the log of a run with the present options; empty when they want none.
  std::string LogFileName() const;

  // Called before each file of a run, and before the originals are replaced; an exception out of it stops the
  // run.
  std::function<void(const TRunProgress&)> OnProgress;
  // Called with a line for the user about something that does not stop the run.
  std::function<void(std::string_view message)> OnWarning;
  // Whether a file, by its full Windows path, is to be left out of a run. Unset: none is.
  std::function<bool(std::string_view fileName)> OnExclude;

 protected:
  // The text that stands in a unit's source in place of a class name. Called by several threads at a time.
  virtual std::string GetReplacement(std::string_view oldClass, std::string_view newClass);

 private:
  bool RunFiles();
  void InitUnitList();
  void InitProjectUnits();
  void ScanFolder(const std::string& dir, bool includeSubDirs);
  std::string RunFolder() const;
  void WalkUnits(TTeam& team, const std::string& tempDir);
  void WalkList(TTeam& team, const std::string& tempDir);
  void ReportProgress(int done, std::string_view fileName) const;
  void ProcessEntry(const std::string& fileName, TFilesAhead& files, TTeam& team, const std::string& tempDir);
  void RefuseSecondFile(const std::string& fileName);
  void RefuseCaseTwin(const std::string& name);
  void NeedFolder(const std::string& folder);
  void BackupFile(const std::string& fileName, const std::string& relPath, TTeam& team);
  void FinishBackups(TTeam& team);
  bool ReplaceOriginals(TTeam& team, const std::string& tempDir);
  void WriteUndoFile();

  void ProcessFile(const std::string& fileName, TFilesAhead& files, const std::string& targetDir);
  void ProcessUnit(const TFileConversion& unit, const std::string& sourceFile, const std::string& targetFile);
  void ProcessForm(const TFileConversion& form, const std::string& sourceFile, const std::string& targetFile);
  void WriteChanged(const TFileConversion& file, const std::string& sourceFile,
                    const std::string& targetFile);
  void LogChanges(int changes);
  void CollectDatabaseNames(const std::string& fileName);
  std::string GetDatabaseValue(std::string_view alias, const qrl::TEncoding& encoding);
  static std::string AliasKey(std::string_view alias, const qrl::TEncoding& encoding);
  bool IsExcluded(std::string_view fileName) const { return OnExclude && OnExclude(fileName); }
  void Warn(std::string_view message) const;

  struct TBackup {
    std::string FileName;
    bool Failed = false;
    uint32_t Error = 0;  // why
  };

  TClassMap FClasses;
  rtl::TStringList
      FUnits;  // the working list of a run: full names, in processing order; grows during the walk
  TLogWriter FLog;
  int FChangedFiles = 0;        // of this run
  rtl::TStringList FUndoList;   // original=backup
  rtl::TStringList FDatabases;  // alias=Root.Component
  std::string FOldUnit;         // in upper case
  std::string FNewUnits;
  TFileConverter FConverter, FOtherConverter;  // both at work at the same time
  std::mutex FDatabasesMutex;                  // the list indexes itself when it is asked
  TReplaceOptions& FOptions;
  std::unordered_map<std::string, std::string>
      FProcessed;  // of a project run: upper-cased bare name -> full name
  // Of a folder run: the folders of all files, and the changed files. By upper case, and each spelling met.
  std::unordered_map<std::string, std::string> FNames;
  std::unordered_set<std::string> FCheckedNames;
  std::unordered_set<std::string> FFolders;  // temporary and backup folders that stand
  std::deque<TBackup> FBackups;              // in the order of the files
};

}  // namespace mig
