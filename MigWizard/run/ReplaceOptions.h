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
};

}  // namespace mig
