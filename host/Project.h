// The open project group and its projects, as modules of the host.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "host/Modules.h"
#include "host/ProjectFile.h"

namespace host {

class TProjectGroup;

// A project. As a module it has one editor, that of its source. Its open units are saved and closed with it.
class TProject final : public TModuleObject<toolsapi::IOTAProject> {
 public:
  TProject(THost& host, TProjectFile file);

  const std::string& MainSource() const { return FFile.MainSource; }        // empty if it does not exist
  const std::vector<TFileReference>& Units() const { return FFile.Units; }  // as TProjectFile has them
  const std::vector<TMissingFile>& Missing() const { return FFile.Missing; }
  // Returns whether the file, in any spelling, is one of Units.
  bool Lists(std::string_view fileName) const { return ListsKey(FileKey(fileName)); }
  bool ListsKey(const std::string& key) const { return FKeys.contains(key); }

  int GetModuleCount() override { return static_cast<int>(FFile.Units.size()); }
  toolsapi::TIntf<toolsapi::IOTAModuleInfo> GetModule(int index) override;

 protected:
  std::vector<TModule*> Together() override;
  void LeaveHost(THost& host) override;

 private:
  TProjectFile FFile;
  std::unordered_set<std::string> FKeys;  // FileKey of each of Units
};

// The open group: of a group file, or a group without a name that contains a single project.
class TProjectGroup final : public TModuleObject<toolsapi::IOTAProjectGroup> {
 public:
  TProjectGroup(THost& host, std::string_view fileName) : TModuleObject(host, fileName) {}

  int Count() const { return static_cast<int>(FProjects.size()); }
  TProject& operator[](int index) const { return *FProjects.at(static_cast<size_t>(index)); }
  TProject* ActiveProject() const { return FActive; }  // null in a group without projects
  toolsapi::TIntf<toolsapi::IOTAProject> GetActiveProject() override;

 protected:
  std::vector<TModule*> Together() override;
  void LeaveHost(THost& host) override;

 private:
  friend class THost;
  void Add(toolsapi::TIntf<TProject> project);
  // If it was the active project, the first remaining one becomes active.
  void Remove(const TProject& project);

  std::vector<toolsapi::TIntf<TProject>> FProjects;
  TProject* FActive = nullptr;
};

}  // namespace host
