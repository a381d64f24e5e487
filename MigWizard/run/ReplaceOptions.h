// The options of a run. One object is shared by the replacers, the wizard, which fills it, and the expert,
// which stores it, so that all of them see the user's last choice.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace rtl {
class TRegIniFile;
}

namespace mig {

// The source of a run's units. Stored as a number; any low byte is accepted.
enum TScanDest : uint8_t {
  sdProject = 0,  // the current open project
  sdFolder = 1,   // a disk folder
};

// How carefully a run treats existing files. Not stored.
struct TRunPolicy {
  // Stops the run before it replaces the first original if a changed file has no true backup or was edited
  // since it was read. Keeps a journal on the disk during the replacement. Refuses, before anything is made,
  // a second run at the same time, and a backup folder that undoes an earlier run (UndoState.h).
  // Leaves out and reports files and folders that cannot be read (TComponentReplacer::LeftOut), where the run
  // would otherwise end. Without Strict, none of this applies.
  bool Strict = false;

  // These apply with Strict only.
  bool OverwriteBackups = false;  // accepts a backup folder with the undo file of an earlier run
  bool SkipConverted = false;     // leaves out units that already name the new units
  bool KeepGoing = false;         // leaves out files whose contents cannot be converted
};

class TReplaceOptions {
 public:
  // `sourceName` names the component families to replace: "BDE/IBX".
  explicit TReplaceOptions(std::string_view sourceName);

  // Load and save the six stored options in `section` of an open store. If a key is missing or cannot be
  // read, its field is unchanged. BackupDir, UnitNames and SourceName are not stored.
  void Load(const rtl::TRegIniFile& reg, std::string_view section);
  void Save(rtl::TRegIniFile& reg, std::string_view section) const;

  // Returns "BDE/IBX Migration Wizard": the caption of message boxes, the name of the section, and the stem
  // of the log's title.
  std::string GetTitle() const;

  std::string SourceName;
  TScanDest Dest = sdProject;
  std::string Directory;        // Windows path of the folder to scan, with sdFolder
  bool IncludeSubDirs = false;  // scan its subfolders too
  bool MakeBackup = true;       // make backups and write the undo file
  std::string BackupDir;        // full Windows path of this run's backup folder
  bool WriteLog = true;
  // With sdProject: bare file names of the selected units, one a line, as the Text of a list.
  std::string UnitNames;
  bool ViewLog = false;  // open the log after the run; no effect without WriteLog
  TRunPolicy Policy;
};

}  // namespace mig
