// A project on disk: what its files say, checked against the disk.
//
// Any file of a project opens it: the source .dpr or .dpk, or the project file .dproj or .bdsproj, which
// names the source. The units are those that the project file lists, then those that the source lists beyond
// them: entries with a path, and units without one that lie in the source's folder. All other units without a
// path come from libraries and are no part of the project.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/FileReference.h"
#include "host/ProjectPath.h"

namespace host {

// What a file is, by its extension.
enum class TProjectKind { None, Source, Dproj, Bdsproj, Bpg, Groupproj, Bdsgroup };
TProjectKind ProjectKindOf(std::string_view fileName);
bool IsGroupKind(TProjectKind kind);
// ".dpr, .dpk, .dproj, ...": for messages.
std::string KnownExtensions();

struct TProjectFile {
  std::string FileName;    // as it was asked for
  std::string MainSource;  // empty where the project's source does not exist
  // In the project's order, each file once. Name is the full path, spelled as in the project.
  std::vector<TFileReference> Units;
  // What the project names and the disk lacks: a line for each, with the naming file and line.
  std::vector<std::string> Missing;
};

// Reads the project `fileName`, a full Windows path, and whatever it names. Raises
// EHostError, with file and line, when the project cannot be read or names a folder as a unit, and
// rtl::EFOpenError.
TProjectFile ReadProjectFile(std::string_view fileName);

}  // namespace host
