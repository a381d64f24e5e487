#include "host/ProjectChoice.h"

#include <algorithm>
#include <unordered_map>

#include "host/HostError.h"
#include "rtl/text/SysUtils.h"
#include "win/paths/Drives.h"

namespace host {

namespace {

bool IsPascalUnit(const TFileReference& unit) {
  return rtl::SameText(rtl::ExtractFileExt(unit.Name), ".pas");
}

// Returns whether `named` is the path of the project: full, or relative to the folder of the process or of
// the group.
bool LiesAt(const TProject& project, std::string_view named, const TProjectGroup& group) {
  const std::string key = FileKey(project.FileName());
  return FileKey(win::ToWindowsPath(named)) == key || FileKey(ResolveName(group.FileName(), named)) == key;
}

// Returns whether `named` is the project's file name, with or without its extension.
bool IsCalled(const TProject& project, std::string_view named, const TProjectGroup&) {
  const std::string fileName = rtl::ExtractFileName(project.FileName());
  const std::string key = FileKey(named);
  return key == FileKey(fileName) || key == FileKey(rtl::ChangeFileExt(fileName, ""));
}

std::string ListOf(const TProjectGroup& group) {
  std::string list;
  for (int i = 0; i < group.Count(); ++i) {
    list.append(i == 0 ? "" : ", ").append(rtl::ExtractFileName(group[i].FileName()));
  }
  return list;
}

// A path takes precedence over a name, so that one of two projects with the same name can be chosen.
TProject& ProjectCalled(const TProjectGroup& group, std::string_view named) {
  for (const auto fits : {LiesAt, IsCalled}) {
    TProject* found = nullptr;
    for (int i = 0; i < group.Count(); ++i) {
      if (!fits(group[i], named, group)) continue;
      if (found) throw EChoiceError("More than one project is called " + Quoted(named) + "; give its path.");
      found = &group[i];
    }
    if (found) return *found;
  }
  throw EChoiceError("There is no project " + Quoted(named) + ", only: " + ListOf(group) + ".");
}

}  // namespace

TProject& OpenProjectForRun(THost& host, std::string_view typed, std::string_view active) {
  const std::string fileName = win::ToWindowsPath(typed);
  if (fileName.empty()) throw EHostError(At(typed, 0, "this path has no drive."));
  if (!host.OpenProject(fileName, /*newGroup=*/true)) {
    throw EHostError(At(fileName, 0, "the open project group could not be closed."));
  }
  const TProjectGroup& group = *host.Group();
  if (group.Count() == 0) throw EHostError(At(fileName, 0, "this group has no projects."));
  if (!active.empty()) host.SetActiveProject(ProjectCalled(group, active));
  TProject& project = *host.ActiveProject();
  const auto& units = project.Units();
  if (std::none_of(units.begin(), units.end(), IsPascalUnit)) {
    throw EHostError(At(project.FileName(), 0, "this project has no units."));
  }
  return project;
}

std::vector<std::string> SelectUnits(const TProject& project, const std::vector<std::string>& names) {
  std::unordered_map<std::string, bool> wanted;  // by FileKey: whether a unit of that name was found
  for (const std::string& name : names) wanted.emplace(FileKey(name), false);

  std::vector<std::string> selected;
  for (const TFileReference& unit : project.Units()) {
    if (!IsPascalUnit(unit)) continue;
    std::string name = rtl::ExtractFileName(unit.Name);
    if (!names.empty()) {
      const auto found = wanted.find(FileKey(name));
      if (found == wanted.end()) continue;
      found->second = true;
    }
    selected.push_back(std::move(name));
  }
  for (const std::string& name : names) {
    if (!wanted[FileKey(name)]) {
      throw EChoiceError("The project " + Quoted(project.FileName()) + " has no unit " + Quoted(name) + ".");
    }
  }
  return selected;
}

}  // namespace host
