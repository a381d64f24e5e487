// A project on disk: the contents of its files, checked against the disk.
//
// Any file of a project opens it: the source .dpr or .dpk, or the project file .dproj or .bdsproj, which
// names the source. The units are those that the project file lists, then those that only the source lists:
// entries with a path, and entries without one whose file is in the source's folder. All other entries
// without a path are units of libraries, which do not belong to the project.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/FileReference.h"
#include "host/ProjectPath.h"

namespace host {

// The kind of a file, by its extension.
enum class TProjectKind { None, Source, Dproj, Bdsproj, Bpg, Groupproj, Bdsgroup };
TProjectKind ProjectKindOf(std::string_view fileName);
bool IsGroupKind(TProjectKind kind);
// Returns ".dpr, .dpk, .dproj, ...", for messages.
std::string KnownExtensions();

// A file that the project names but that cannot be used.
struct TMissingFile {
  std::string Name;     // the full path, spelled as in the project
  std::string Message;  // with the naming file, its line and the reason
};

struct TProjectFile {
  std::string FileName;    // as given to ReadProjectFile
  std::string MainSource;  // empty if the project's source does not exist
  // In the project's order, each file once. Name is the full path, spelled as in the project.
  std::vector<TFileReference> Units;
  std::vector<TMissingFile> Missing;
};

// Reads the project `fileName`, a full Windows path, and the files that it names. Raises EHostError, with
// file and line, if the project cannot be read or names a folder as a unit, and rtl::EFOpenError. Missing
// units raise nothing.
TProjectFile ReadProjectFile(std::string_view fileName);

}  // namespace host
