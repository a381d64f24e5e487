#include "MigWizard/run/RunSelection.h"

#include "MigWizard/run/RunErrors.h"
#include "rtl/text/SysUtils.h"
#include "win/paths/FileNames.h"

namespace mig {

void TRunPlan::Add(const std::string& fileName, const TFileVersion& version,
                   const TFileConversion& conversion, bool isChanged) {
  const std::string key = win::UpperFileName(fileName);
  if (!FIndices.emplace(key, FFiles.size()).second) return;  // a form that several units name
  const auto named = FFormGroups.find(key);
  const size_t group = named != FFormGroups.end() ? named->second : FFiles.size();
  FFiles.push_back({fileName, version, isChanged, group, conversion.Edits});
  for (const std::string& form : conversion.FormFiles) {
    const size_t own = FFiles.back().Group;
    const auto [place, isNew] = FFormGroups.emplace(win::UpperFileName(form), own);
    if (!isNew && place->second != own) Join(own, place->second);
  }
}

void TRunPlan::Join(size_t group, size_t other) {
  for (TPlannedFile& file : FFiles)
    if (file.Group == group) file.Group = other;
  for (auto& [form, formGroup] : FFormGroups)
    if (formGroup == group) formGroup = other;
}

TRunSelection::TRunSelection(const TRunPlan& plan) : FPlan(plan) {
  for (const TPlannedFile& file : plan.Files()) FFiles.emplace(win::UpperFileName(file.FileName), &file);
}

void TRunSelection::LeaveOut(const std::string& fileName) {
  FLeftOut[win::UpperFileName(fileName)].LeaveOutAll();
}

void TRunSelection::LeaveOutGroup(size_t group) {
  for (const TPlannedFile& file : FPlan.Files())
    if (file.Group == group) LeaveOut(file.FileName);
}

void TRunSelection::LeaveOut(const std::string& fileName, size_t place) {
  FLeftOut[win::UpperFileName(fileName)].LeaveOut(place);
}

const TEditSelection* TRunSelection::Find(const std::string& fileName) const {
  const auto leftOut = FLeftOut.find(win::UpperFileName(fileName));
  return leftOut == FLeftOut.end() ? nullptr : &leftOut->second;
}

void TRunSelection::RequireSame(const std::string& fileName, const TFileVersion& version) const {
  const auto file = FFiles.find(win::UpperFileName(fileName));
  if (file == FFiles.end())
    throw EFileEdited(rtl::Format("\"%s\" was added after the preview. No file was replaced.", {fileName}));
  if (file->second->Version.Stamp != version.Stamp) RaiseChanged(fileName);
}

void TRunSelection::RequireUnchanged() const {
  for (const TPlannedFile& file : FPlan.Files())
    if (!IsUnchanged(file.FileName, file.Version)) RaiseChanged(file.FileName);
}

void TRunSelection::RaiseChanged(const std::string& fileName) {
  throw EFileEdited(rtl::Format("\"%s\" was changed after the preview. No file was replaced.", {fileName}));
}

}  // namespace mig
