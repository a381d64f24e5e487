#include "MigWizard/run/RunFindings.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "MigWizard/passes/FindingRules.h"
#include "MigWizard/passes/UnitFindings.h"
#include "MigWizard/passes/UnitNames.h"
#include "rtl/text/SysUtils.h"

namespace mig {
namespace {

constexpr int kMostAncestors = 50;

std::string LastPart(const std::string& unitName) {
  return rtl::LowerCase(unitName.substr(unitName.rfind('.') + 1));
}

bool ComesBefore(const TFinding& left, const TFinding& right) {
  return std::pair(left.Line, left.Column) < std::pair(right.Line, right.Column);
}

TFinding MakeFinding(TRuleId rule, const TTextPlace& place) {
  TFinding finding;
  finding.Rule = rule;
  finding.Level = RuleOf(rule).Level;
  finding.Line = place.Line;
  finding.Column = place.Column;
  return finding;
}

}  // namespace

void TRunFindings::AddFile(const std::string& fileName, const TFileConversion& conversion, bool isChanged,
                           const std::string& backupName) {
  TFileReport& file = FFiles.emplace_back();
  file.FileName = fileName;
  file.IsUnit = IsUnitSource(fileName);
  file.Changes = conversion.Changes;
  file.IsChanged = isChanged;
  file.NamesNewUnits = conversion.NamesNewUnits;
  file.BackupName = backupName;
  if (!conversion.Findings) return;
  const TFileFindings& found = *conversion.Findings;
  file.IsBinary = found.IsBinary;
  file.Encoding = found.Encoding;
  file.Converted = found.Converted;
  FKept.emplace_back(conversion.Findings, FFiles.size() - 1);
  for (const std::string& form : std::exchange(FMissingForms, {})) {
    const auto place = std::find(conversion.FormFiles.begin(), conversion.FormFiles.end(), form);
    if (place == conversion.FormFiles.end()) continue;
    TFinding finding = MakeFinding(
        TRuleId::MissingForm, found.FormPlaces[static_cast<size_t>(place - conversion.FormFiles.begin())]);
    finding.Subject = rtl::ExtractFileName(form);
    file.Findings.push_back(std::move(finding));
  }
  if (found.Outline) FUnits.push_back({&*found.Outline, FFiles.size() - 1});
}

void TRunFindings::AddMissingForm(const std::string& formName) {
  FMissingForms.push_back(formName);
}

void TRunFindings::AddOtherForm(const std::string& fileName, size_t mappedObjects) {
  TFileReport& file = FFiles.emplace_back();
  file.FileName = fileName;
  file.IsInRun = false;
  file.Findings.push_back(MakeFinding(TRuleId::FormNotInRun, {}));
  file.Findings.back().Value = std::to_string(mappedObjects);
}

std::vector<TFileReport> TRunFindings::Finish() {
  TakeFindings();
  if (NeedsDeclarations()) {
    ReadInterfaces();
    Index();
    for (const TUnit& unit : FUnits) ResolveUses(unit);
  }
  std::unordered_set<std::string> ownUnits;
  for (const TUnit& unit : FUnits) ownUnits.insert(rtl::LowerCase(unit.Outline->Name));
  for (TFileReport& file : FFiles) {
    RemoveFindingsOfOwnNames(file, ownUnits);
    if (!std::is_sorted(file.Findings.begin(), file.Findings.end(), ComesBefore))
      std::stable_sort(file.Findings.begin(), file.Findings.end(), ComesBefore);
  }
  FUnits.clear();
  FKept.clear();
  FNames.clear();
  FOutlines.clear();
  return std::exchange(FFiles, {});
}

// Moves the findings of the files to their reports, or copies them if they are shared.
void TRunFindings::TakeFindings() {
  for (const auto& [found, index] : FKept) {
    std::vector<TFinding> findings =
        found.use_count() == 1 ? std::exchange(found->Findings, {}) : found->Findings;
    std::vector<TFinding>& others = FFiles[index].Findings;
    findings.insert(findings.end(), std::make_move_iterator(others.begin()),
                    std::make_move_iterator(others.end()));
    others = std::move(findings);
  }
}

// Returns True if the findings of any file depend on the declarations of units.
bool TRunFindings::NeedsDeclarations() const {
  const auto isUnmapped = [](const TFinding& finding) { return finding.Rule == TRuleId::UnmappedClass; };
  return std::any_of(FUnits.begin(), FUnits.end(),
                     [](const TUnit& unit) { return !unit.Outline->Uses.empty(); }) ||
         std::any_of(FFiles.begin(), FFiles.end(), [&isUnmapped](const TFileReport& file) {
           return std::any_of(file.Findings.begin(), file.Findings.end(), isUnmapped);
         });
}

void TRunFindings::ReadInterfaces() {
  for (const auto& [found, index] : FKept) {
    if (found->Interface.empty()) continue;
    *found->Outline = ReadInterface(found->Interface, *found->InterfaceEncoding);
    ConvertNames(*found->Outline, *found->InterfaceEncoding);
    found->Interface.clear();
  }
}

void TRunFindings::Index() {
  for (const TUnit& unit : FUnits) {
    for (const TDeclaration& name : unit.Outline->Names)
      FNames[rtl::LowerCase(name.Name)].push_back({&name, &unit});
    for (const TClassOutline& outline : unit.Outline->Classes)
      FOutlines[rtl::LowerCase(outline.Name)].push_back(&outline);
  }
}

void TRunFindings::ResolveUses(const TUnit& unit) {
  std::vector<TFinding>& findings = FFiles[unit.File].Findings;
  for (const TNameUse& use : unit.Outline->Uses) {
    if (use.Kind != TNameUse::OldMember) {
      if (use.Path.empty() && IsUsersOwn(unit, use)) continue;
      TFinding finding =
          MakeFinding(use.Kind == TNameUse::OldClass ? TRuleId::OldClass : TRuleId::OldCall, use.Place);
      finding.Subject = use.Shown;
      const TOldName* old = FOldNames.Find(TOldNames::Class, use.Name);
      finding.Before = use.Before;
      finding.After = use.After;
      if (use.Kind == TNameUse::OldClass) finding.OldClass = use.Name;
      if (use.Kind == TNameUse::OldCall) {
        old = FOldNames.FindPrefix(use.Name);
        for (const TOldNames::TKind kind : {TOldNames::Call, TOldNames::Object})
          if (old == nullptr) old = FOldNames.Find(kind, use.Name);
      }
      if (old != nullptr) finding.Advice = old->Advice;
      findings.push_back(std::move(finding));
      continue;
    }
    const TFound found = Resolve(unit, use);
    if (found.Declaration == nullptr) continue;
    const std::string oldClass = ConvertedClassOf(found.Declaration->Type, use.Name);
    const TOldName* old = oldClass.empty() ? nullptr : FOldNames.FindMember(oldClass, use.Name);
    if (old == nullptr) continue;
    TFinding finding = MakeFinding(TRuleId::OldMember, use.Place);
    const std::string* newClass = FClasses.Find(oldClass);
    finding.Subject = use.Name;
    finding.Before = use.Before;
    finding.After = use.After;
    finding.Value = found.Declaration->Name;
    finding.NewClass = newClass == nullptr ? oldClass : *newClass;
    if (newClass != nullptr) finding.OldClass = oldClass;
    finding.Detail = "in " + rtl::ExtractFileName(FFiles[found.Unit->File].FileName) + "(" +
                     std::to_string(found.Declaration->Place.Line) + "," +
                     std::to_string(found.Declaration->Place.Column) + ") as " + found.Declaration->Type;
    finding.Advice = old->Advice;
    findings.push_back(std::move(finding));
  }
}

// Returns True if the run's units may declare the name.
bool TRunFindings::IsUsersOwn(const TUnit& unit, const TNameUse& use) const {
  const auto names = FNames.find(rtl::LowerCase(use.Name));
  if (names != FNames.end()) {
    for (const TFound& found : names->second)
      if (found.Unit == &unit || Sees(unit, found)) return true;
  }
  if (use.Owner.empty()) return false;
  return FindMember(use.Owner, use.Name).Declaration != nullptr ||
         (FOldNames.Find(TOldNames::Object, use.Name) != nullptr && MayInheritNames(use.Owner));
}

// Returns True if the class, or one from which it descends, has members that neither the run nor the list of
// names knows.
bool TRunFindings::MayInheritNames(const std::string& className) const {
  std::string name = className;
  for (int i = 0; i < kMostAncestors && !name.empty(); ++i) {
    const auto outlines = FOutlines.find(rtl::LowerCase(name));
    if (outlines == FOutlines.end()) return FOldNames.Find(TOldNames::Base, name) == nullptr;
    if (outlines->second.size() != 1) return true;
    name = outlines->second[0]->Ancestor;
  }
  return !name.empty();
}

// Returns True if `unit` uses the unit of the declaration, which is in the interface section there.
bool TRunFindings::Sees(const TUnit& unit, const TFound& found) const {
  const TUnitOutline& other = *found.Unit->Outline;
  if (found.Declaration >= other.Names.data() + other.InterfaceNames) return false;
  const std::string name = LastPart(other.Name);
  return std::any_of(unit.Outline->UsedUnits.begin(), unit.Outline->UsedUnits.end(),
                     [&name](const std::string& used) { return LastPart(used) == name; });
}

// Returns the declaration of the last name before the member, or nothing if it is ambiguous.
TRunFindings::TFound TRunFindings::Resolve(const TUnit& unit, const TNameUse& use) const {
  size_t parts = 1;  // of the path, that found names
  TFound found = FindFirst(unit, use);
  if (found.Declaration == nullptr) found = FindAfterUnit(unit, use, parts);
  std::string owner = rtl::SameText(use.Path[0], "Self") && !use.IsLocal ? use.Owner : std::string();
  if (owner.empty() && found.Declaration == nullptr) return {};
  for (size_t i = parts; i < use.Path.size(); ++i) {
    const std::string& className = owner.empty() ? found.Declaration->Type : owner;
    found = FindMember(className, use.Path[i]);
    if (found.Declaration == nullptr) return {};
    owner.clear();
  }
  return owner.empty() ? found : TFound{};
}

TRunFindings::TFound TRunFindings::FindFirst(const TUnit& unit, const TNameUse& use) const {
  if (use.IsLocal) return {&use.Local, &unit};
  if (!use.Owner.empty()) {
    if (const TFound member = FindMember(use.Owner, use.Path[0]); member.Declaration != nullptr)
      return member;
  }
  const auto names = FNames.find(rtl::LowerCase(use.Path[0]));
  if (names == FNames.end()) return {};
  TFound result;
  for (const TFound& found : names->second) {
    if (found.Unit == &unit) return found;
    if (!Sees(unit, found)) continue;
    if (result.Declaration != nullptr) return {};  // declared by two units
    result = found;
  }
  return result;
}

// If the path begins with the name of the unit or of one that it uses, returns the declaration after it, and
// sets `parts` to the number of names up to that.
TRunFindings::TFound TRunFindings::FindAfterUnit(const TUnit& unit, const TNameUse& use,
                                                 size_t& parts) const {
  if (FNames.contains(rtl::LowerCase(use.Path[0]))) return {};
  std::string unitName;
  for (size_t i = 0; i + 1 < use.Path.size(); ++i) {
    unitName.append(i == 0 ? "" : ".").append(use.Path[i]);
    const auto names = FNames.find(rtl::LowerCase(use.Path[i + 1]));
    if (names == FNames.end()) continue;
    for (const TFound& found : names->second) {
      if (!rtl::SameText(found.Unit->Outline->Name, unitName)) continue;
      if (found.Unit != &unit && !Sees(unit, found)) continue;
      parts = i + 2;
      return found;
    }
  }
  return {};
}

// Searches the class and its ancestors.
TRunFindings::TFound TRunFindings::FindMember(const std::string& className, const std::string& member) const {
  std::string name = className;
  for (int i = 0; i < kMostAncestors && !name.empty(); ++i) {
    const auto outlines = FOutlines.find(rtl::LowerCase(name));
    if (outlines == FOutlines.end() || outlines->second.size() != 1) return {};
    const TClassOutline& outline = *outlines->second[0];
    for (const TDeclaration& each : outline.Members) {
      if (!rtl::SameText(each.Name, member)) continue;
      for (const TUnit& unit : FUnits) {
        const std::vector<TClassOutline>& classes = unit.Outline->Classes;
        if (&outline >= classes.data() && &outline < classes.data() + classes.size()) return {&each, &unit};
      }
    }
    name = outline.Ancestor;
  }
  return {};
}

// Returns `type` or its nearest ancestor that is a class of the map or a new class. Returns an empty string
// if there is none, or if a class before it declares `member` itself.
std::string TRunFindings::ConvertedClassOf(const std::string& type, const std::string& member) const {
  std::string name = type;
  for (int i = 0; i < kMostAncestors && !name.empty(); ++i) {
    const auto outlines = FOutlines.find(rtl::LowerCase(name));
    if (outlines == FOutlines.end())
      return FClasses.Find(name) != nullptr || FClasses.IsNewClass(name) ? name : std::string();
    if (outlines->second.size() != 1) return {};
    const TClassOutline& outline = *outlines->second[0];
    for (const TDeclaration& each : outline.Members)
      if (rtl::SameText(each.Name, member)) return {};
    name = outline.Ancestor;
  }
  return {};
}

// Removes findings about units and classes that the run's own units declare under old names. `ownUnits` are
// the names of these units in lower case.
void TRunFindings::RemoveFindingsOfOwnNames(TFileReport& file,
                                            const std::unordered_set<std::string>& ownUnits) const {
  const auto isOwn = [&](const TFinding& finding) {
    if (finding.Rule == TRuleId::UnmappedClass) return FOutlines.contains(rtl::LowerCase(finding.OldClass));
    return finding.Rule == TRuleId::OldUnit && ownUnits.contains(rtl::LowerCase(finding.Subject));
  };
  file.Findings.erase(std::remove_if(file.Findings.begin(), file.Findings.end(), isOwn), file.Findings.end());
}

}  // namespace mig
