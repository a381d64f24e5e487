#include "host/Project.h"

#include <utility>

#include "host/Host.h"

namespace host {

using toolsapi::IOTAModuleInfo;
using toolsapi::IOTAProject;
using toolsapi::MakeIntf;
using toolsapi::TIntf;

namespace {

class TModuleInfo final : public toolsapi::TInterfacedObject<IOTAModuleInfo> {
 public:
  explicit TModuleInfo(std::string_view fileName) : FFileName(fileName) {}
  std::string GetFileName() override { return FFileName; }

 private:
  std::string FFileName;
};

}  // namespace

TProject::TProject(THost& host, TProjectFile file)
    : TModuleObject(host, file.FileName), FFile(std::move(file)) {
  FKeys.reserve(FFile.Units.size());
  for (const TFileReference& unit : FFile.Units) FKeys.insert(FileKey(unit.Name));
  if (!FFile.MainSource.empty()) AddEditor(TEditorKind::Source, FFile.MainSource);
}

TIntf<IOTAModuleInfo> TProject::GetModule(int index) {
  return MakeIntf<TModuleInfo>(FFile.Units.at(static_cast<size_t>(index)).Name);
}

std::vector<TModule*> TProject::Together() {
  std::vector<TModule*> together = {this};
  if (!Host()) return together;
  for (const auto& unit : Host()->Units()) {
    if (Lists(unit->FileName())) together.push_back(unit.Get());
  }
  return together;
}

void TProject::LeaveHost(THost& host) {
  host.RemoveProject(*this);
}

void TProjectGroup::Add(TIntf<TProject> project) {
  if (!FActive) FActive = project.Get();
  FProjects.push_back(std::move(project));
}

void TProjectGroup::Remove(const TProject& project) {
  std::erase_if(FProjects, [&](const TIntf<TProject>& listed) { return listed.Get() == &project; });
  if (FActive == &project) FActive = FProjects.empty() ? nullptr : FProjects.front().Get();
}

TIntf<IOTAProject> TProjectGroup::GetActiveProject() {
  return TIntf<IOTAProject>(FActive);
}

std::vector<TModule*> TProjectGroup::Together() {
  std::vector<TModule*> together = {this};
  for (const TIntf<TProject>& project : FProjects) together.push_back(project.Get());
  if (!Host()) return together;
  for (const auto& unit : Host()->Units()) {
    if (unit->GetOwnerCount() > 0) together.push_back(unit.Get());
  }
  return together;
}

void TProjectGroup::LeaveHost(THost& host) {
  host.RemoveGroup();
}

}  // namespace host
