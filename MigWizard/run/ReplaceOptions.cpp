#include "MigWizard/run/ReplaceOptions.h"

#include "MigWizard/run/RExpertRes.h"
#include "rtl/text/Registry.h"

namespace mig {

TReplaceOptions::TReplaceOptions(std::string_view sourceName) : SourceName(sourceName) {}

void TReplaceOptions::Load(const rtl::TRegIniFile& reg, std::string_view section) {
  Dest = static_cast<TScanDest>(reg.ReadInteger(section, "Dest", Dest) & 0xFF);
  Directory = reg.ReadString(section, "Directory", Directory);
  IncludeSubDirs = reg.ReadBool(section, "IncludeSubDirs", IncludeSubDirs);
  MakeBackup = reg.ReadBool(section, "MakeBackup", MakeBackup);
  WriteLog = reg.ReadBool(section, "WriteLog", WriteLog);
  ViewLog = reg.ReadBool(section, "ViewLog", ViewLog);
}

void TReplaceOptions::Save(rtl::TRegIniFile& reg, std::string_view section) const {
  reg.WriteInteger(section, "Dest", Dest);
  reg.WriteString(section, "Directory", Directory);
  reg.WriteBool(section, "IncludeSubDirs", IncludeSubDirs);
  reg.WriteBool(section, "MakeBackup", MakeBackup);
  reg.WriteBool(section, "WriteLog", WriteLog);
  reg.WriteBool(section, "ViewLog", ViewLog);
}

std::string TReplaceOptions::GetTitle() const {
  return SourceName + SMigrationWizard;
}

}  // namespace mig
