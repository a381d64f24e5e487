#include "host/ProjectFile.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <utility>

#include "host/HostError.h"
#include "host/ProjectSource.h"
#include "host/ProjectText.h"
#include "host/ProjectXml.h"
#include "rtl/text/SysUtils.h"
#include "win/Errors.h"

namespace host {

namespace {

constexpr std::array<std::pair<std::string_view, TProjectKind>, 7> kKinds = {{
    {".dpr", TProjectKind::Source},
    {".dpk", TProjectKind::Source},
    {".dproj", TProjectKind::Dproj},
    {".bdsproj", TProjectKind::Bdsproj},
    {".bpg", TProjectKind::Bpg},
    {".groupproj", TProjectKind::Groupproj},
    {".bdsgroup", TProjectKind::Bdsgroup},
}};

// Returns whether a file that a project lists is a compiled package or assembly, not a unit.
bool IsCompiled(std::string_view fileName) {
  static constexpr std::array<std::string_view, 4> kExtensions = {".dcp", ".dcpil", ".bpl", ".dll"};
  const std::string extension = rtl::ExtractFileExt(fileName);
  return std::any_of(kExtensions.begin(), kExtensions.end(),
                     [&](std::string_view compiled) { return rtl::SameText(extension, compiled); });
}

class TProjectReader {
 public:
  explicit TProjectReader(std::string_view fileName) { FProject.FileName = fileName; }

  TProjectFile Read() {
    const TProjectKind kind = ProjectKindOf(FProject.FileName);
    if (kind == TProjectKind::None || IsGroupKind(kind)) {
      throw EHostError(At(FProject.FileName, 0,
                          "this is no project: its extension is none of " + KnownExtensions() + "."));
    }
    if (kind == TProjectKind::Source) {
      ReadSource(FProject.FileName);
    } else {
      ReadXml(kind);
    }
    return std::move(FProject);
  }

 private:
  void ReadXml(TProjectKind kind) {
    const std::string& fileName = FProject.FileName;
    const std::string xml = ReadProjectXml(fileName);
    const TXmlProject project =
        kind == TProjectKind::Dproj ? ReadDproj(xml, fileName) : ReadBdsproj(xml, fileName);
    for (const TFileReference& unit : project.Units) {
      if (!IsCompiled(unit.Name)) Add(fileName, unit);
    }
    const TFileReference& source = project.MainSource;
    if (source.Name.empty()) return;
    const std::string sourceName = ResolveName(fileName, source.Name);
    if (KindOfFile(sourceName) != TFileKind::Missing) return ReadSource(sourceName);
    if (!FProject.Units.empty()) {
      NoteMissing(fileName, source.Line, sourceName);
    } else {
      throw EHostError(
          At(fileName, source.Line, "the main source " + Quoted(sourceName) + " " + ReasonOfMissing()));
    }
  }

  void ReadSource(const std::string& sourceName) {
    const mig::TTextFile source = ReadProjectText(sourceName);
    FProject.MainSource = sourceName;
    for (TSourceUnit& unit : ReadProjectSource(source.Text, *source.Encoding, sourceName)) {
      if (unit.Path.empty()) {
        unit.Path = unit.UnitName + ".pas";
        if (KindOfFile(ResolveName(sourceName, unit.Path)) != TFileKind::File) continue;
      }
      Add(sourceName, {.Name = std::move(unit.Path),
                       .FormName = std::move(unit.FormName),
                       .FormClass = std::move(unit.FormClass),
                       .Line = unit.Line});
    }
  }

  void Add(const std::string& namedIn, TFileReference unit) {
    unit.Name = ResolveName(namedIn, unit.Name);
    const auto [place, isNew] = FPlaces.try_emplace(FileKey(unit.Name), FProject.Units.size());
    if (!isNew) {
      CompleteForm(place->second, unit);
      return;
    }
    switch (KindOfFile(unit.Name)) {
      case TFileKind::File:
        FProject.Units.push_back(std::move(unit));
        return;
      case TFileKind::Folder:
        throw EHostError(At(namedIn, unit.Line, Quoted(unit.Name) + " is a folder, not a unit."));
      case TFileKind::Missing:
        place->second = kMissing;
        NoteMissing(namedIn, unit.Line, unit.Name);
    }
  }

  // Only the second entry of a file that is named twice may give its form.
  void CompleteForm(size_t place, const TFileReference& again) {
    if (place == kMissing || !FProject.Units[place].FormName.empty()) return;
    FProject.Units[place].FormName = again.FormName;
    FProject.Units[place].FormClass = again.FormClass;
  }

  // KindOfFile has just returned Missing for `fileName`.
  void NoteMissing(std::string_view namedIn, int line, const std::string& fileName) {
    FProject.Missing.push_back({fileName, At(namedIn, line, Quoted(fileName) + " " + ReasonOfMissing())});
  }

  static constexpr size_t kMissing = static_cast<size_t>(-1);

  TProjectFile FProject;
  std::unordered_map<std::string, size_t> FPlaces;  // in Units, by FileKey
};

}  // namespace

TProjectKind ProjectKindOf(std::string_view fileName) {
  const std::string extension = rtl::ExtractFileExt(fileName);
  for (const auto& [known, kind] : kKinds) {
    if (rtl::SameText(extension, known)) return kind;
  }
  return TProjectKind::None;
}

bool IsGroupKind(TProjectKind kind) {
  return kind == TProjectKind::Bpg || kind == TProjectKind::Groupproj || kind == TProjectKind::Bdsgroup;
}

std::string KnownExtensions() {
  std::string list;
  for (const auto& [extension, kind] : kKinds) list.append(list.empty() ? "" : ", ").append(extension);
  return list;
}

TProjectFile ReadProjectFile(std::string_view fileName) {
  return TProjectReader(fileName).Read();
}

}  // namespace host
