#include "host/GroupFile.h"

#include <unordered_set>
#include <utility>

#include "host/HostError.h"
#include "host/MakeGroup.h"
#include "host/ProjectFile.h"
#include "host/ProjectText.h"
#include "host/ProjectXml.h"

namespace host {

namespace {

std::vector<TFileReference> ReadReferences(const std::string& fileName) {
  switch (ProjectKindOf(fileName)) {
    case TProjectKind::Groupproj:
      return ReadGroupproj(ReadProjectXml(fileName), fileName);
    case TProjectKind::Bdsgroup:
      return ReadBdsgroup(ReadProjectXml(fileName), fileName);
    case TProjectKind::Bpg: {
      const mig::TTextFile file = ReadProjectText(fileName);
      return ReadBpg(ToUtf8(file.Text, *file.Encoding), fileName);
    }
    default:
      throw EHostError(At(fileName, 0, "this is no project group."));
  }
}

class TGroupReader {
 public:
  explicit TGroupReader(std::string_view fileName) { FGroup.FileName = fileName; }

  TGroupFile Read() {
    ReadOne(FGroup.FileName);
    return std::move(FGroup);
  }

 private:
  // The recursion is as deep as different groups list one another.
  void ReadOne(const std::string& fileName) {
    FOpen.insert(FileKey(fileName));
    for (const TFileReference& reference : ReadReferences(fileName)) {
      const std::string name = ResolveName(fileName, reference.Name);
      const TProjectKind kind = ProjectKindOf(name);
      if (kind == TProjectKind::None) {
        FGroup.PassedOver.push_back(
            At(fileName, reference.Line, Quoted(name) + " is not a Delphi project and is skipped."));
        continue;
      }
      CheckIsFile(fileName, reference.Line, name);
      if (IsGroupKind(kind)) {
        if (FOpen.contains(FileKey(name))) {
          throw EHostError(
              At(fileName, reference.Line, "the group " + Quoted(name) + " leads back to itself."));
        }
        if (FRead.insert(FileKey(name)).second) ReadOne(name);
      } else if (FListed.insert(FileKey(name)).second) {
        FGroup.Projects.push_back(name);
      }
    }
    FOpen.erase(FileKey(fileName));
  }

  void CheckIsFile(std::string_view namedIn, int line, const std::string& name) {
    const TFileKind kind = KindOfFile(name);
    if (kind == TFileKind::File) return;
    const std::string reason = kind == TFileKind::Folder ? "is a folder." : ReasonOfMissing();
    throw EHostError(At(namedIn, line, "the project " + Quoted(name) + " " + reason));
  }

  TGroupFile FGroup;
  std::unordered_set<std::string> FOpen;    // keys of the groups from the outermost to the current one
  std::unordered_set<std::string> FRead;    // keys of the groups that were read
  std::unordered_set<std::string> FListed;  // keys of Projects
};

}  // namespace

TGroupFile ReadGroupFile(std::string_view fileName) {
  return TGroupReader(fileName).Read();
}

}  // namespace host
