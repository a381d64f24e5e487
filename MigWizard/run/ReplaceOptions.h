// The options of a run. One object is shared by the replacers, the wizard, which fills it, and the expert,
// which stores it: whoever holds a replacer sees what the user chose last.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace rtl {
class TRegIniFile;
}

namespace mig {

// Where the units of a run come from. Stored as a number, of which any low byte is taken.
enum TScanDest : uint8_t {
  sdProject = 0,  // the current open project
  sdFolder = 1,   // a disk folder
};

// How carefully a run treats what it finds. Not stored.
struct TRunPolicy {
  // The run stops before it replaces the first original if a changed file has no true backup or was edited
  // since it was read. A journal of the replacement is on the disk while it lasts. A run at the same time, or
  // a backup folder with the way back of an earlier run (WayBack.h), is refused before anything is made.
  // Files and folders that cannot be read are left out and reported (TComponentReplacer::LeftOut) where
  // the run would otherwise end. Without Strict, none of this holds.
  bool Strict = false;

  // These count with Strict only.
  bool OverwriteBackups = false;  // accepts a backup folder that holds the undo file of an earlier run
  bool SkipConverted = false;     // leaves units alone that name the new units already
  bool KeepGoing = false;         // leaves out files whose contents cannot be converted
};

class TReplaceOptions {
 public:
  // `sourceName` names the families that are replaced: "BDE/IBX".
  explicit TReplaceOptions(std::string_view sourceName);

  // Read and write the six options that outlive the program, from and to `section` of an open store. A key
  // that is missing or cannot be read leaves its field as it is. BackupDir, UnitNames and SourceName are not
  // stored.
  void Load(const rtl::TRegIniFile& reg, std::string_view section);
  void Save(rtl::TRegIniFile& reg, std::string_view section) const;

  // "BDE/IBX Migration Wizard": the caption of message boxes, the section's name, the stem of the log's
  // title.
  std::string GetTitle() const;

  std::string SourceName;
  TScanDest Dest = sdProject;
  std::string Directory;        // Windows path of the folder to scan, with sdFolder
  bool IncludeSubDirs = false;  // scan its subfolders too
  bool MakeBackup = true;       // take backups and write the undo file
  std::string BackupDir;        // full Windows path of this run's backup folder
  bool WriteLog = true;
  std::string
      UnitNames;  // with sdProject: bare file names of the selected units, one a line, as a list's Text
  bool ViewLog = false;  // open the log after the run; no effect without WriteLog
  TRunPolicy Policy;
};

}  // namespace mig
