#include "cli/Scope.h"

#include <map>

#include "MigWizard/run/FileUtils.h"
#include "MigWizard/run/IDEUtils.h"
#include "MigWizard/run/RExpertRes.h"
#include "cli/Commands.h"
#include "cli/TypedPath.h"
#include "host/HostError.h"
#include "host/ProjectChoice.h"
#include "host/ProjectFile.h"
#include "rtl/text/Files.h"
#include "rtl/text/StringList.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"
#include "win/paths/FileNames.h"

namespace cli {
namespace {

// Ranks the files of one project. The one with the lowest rank has the most information.
int Rank(host::TProjectKind kind) {
  return kind == host::TProjectKind::Dproj ? 0 : kind == host::TProjectKind::Bdsproj ? 1 : 2;
}

// Returns the only project in a folder. Group files are ignored, and the files of one project, such as
// Orders.dpr and Orders.dproj, count as one.
std::string ProjectIn(const std::string& folder, const std::string& typed) {
  std::map<std::string, std::string> projects;  // upper-cased name without extension -> file name
  rtl::TFolderEntries entries(folder);
  while (entries.Next()) {
    const host::TProjectKind kind = host::ProjectKindOf(entries.Name());
    if (kind == host::TProjectKind::None || host::IsGroupKind(kind) || entries.IsFolder()) continue;
    std::string& known = projects[win::UpperFileName(rtl::ChangeFileExt(entries.Name(), ""))];
    if (known.empty() || Rank(kind) < Rank(host::ProjectKindOf(known))) known = entries.Name();
  }
  if (projects.empty()) throw EUsage("There is no project in the folder \"" + typed + "\".");
  if (projects.size() == 1) return mig::JoinPath(folder, projects.begin()->second);
  std::string list;
  for (const auto& [key, name] : projects) list.append(list.empty() ? "" : ", ").append(name);
  throw EUsage("There is more than one project in the folder \"" + typed + "\": " + list + ".");
}

TScope SetFolder(const std::string& folder, bool subFolders, mig::TReplaceOptions& options) {
  options.Dest = mig::sdFolder;
  options.Directory = folder;
  options.IncludeSubDirs = subFolders;
  return {folder};
}

TScope SetProject(const TCommandLine& line, const std::string& fileName, host::THost& host,
                  mig::TReplaceOptions& options) {
  try {
    const host::TProject& project = host::OpenProjectForRun(host, fileName, line.ActiveProject);
    rtl::TStringList units;
    for (const std::string& unit : host::SelectUnits(project, line.Units)) units.Add(unit);
    options.Dest = mig::sdProject;
    options.UnitNames = units.Text();
    return {rtl::ExtractFileDir(mig::TIDEUtils::GetProjectFileName()),
            line.Units.empty() ? project.Missing().size() : 0};
  } catch (const host::EChoiceError& error) {
    throw EUsage(error.what());
  }
}

}  // namespace

TScope SetScope(const TCommandLine& line, host::THost& host, mig::TReplaceOptions& options) {
  const bool hasPath = !line.Arguments.empty();
  if (hasPath + !line.Folder.empty() + !line.Project.empty() != 1)
    throw EUsage("Give one folder or one project to convert: --folder DIR or --project FILE.");
  const std::string& typed = hasPath ? line.Arguments[0] : line.Folder.empty() ? line.Project : line.Folder;
  const std::string path = WindowsPath(typed);
  RequireReachable(path);
  const bool isFolder = rtl::DirectoryExists(path);
  const bool isFile = !isFolder && rtl::FileExists(path);
  if (!line.Folder.empty() && isFile)
    throw EUsage("\"" + typed + "\" is a file. Give its folder, or a project with --project.");
  if (!line.Folder.empty() && !isFolder) throw EUsage(rtl::Format(mig::STargetDirNotExist, {typed}));
  if (!line.Project.empty() && !isFolder && !isFile)
    throw EUsage("The project \"" + typed + "\" does not exist.");
  if (!isFolder && !isFile) throw EUsage("There is no folder or project \"" + typed + "\".");
  if (isFile && host::ProjectKindOf(path) == host::TProjectKind::None)
    throw EUsage("\"" + typed + "\" is no project. Give a folder, or a project file such as Orders.dproj.");

  if (line.Project.empty() && isFolder) {
    if (!line.Units.empty() || !line.ActiveProject.empty())
      throw EUsage(std::string(line.Units.empty() ? "--active" : "--unit") +
                   " cannot be used with a folder.");
    return SetFolder(path, line.SubFolders, options);
  }
  if (line.SubFolders) throw EUsage("--subfolders cannot be used with a project.");
  return SetProject(line, isFolder ? ProjectIn(path, typed) : path, host, options);
}

}  // namespace cli
