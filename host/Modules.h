// The open files of the host, as modules: each has a file name, editors for its files, and owners.
//
// Modules and editors are reference-counted, and clients may hold them longer than the host does. After the
// host has closed a module, it keeps its name and its contents, has no owners, and shows nothing.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/FileBuffer.h"
#include "toolsapi/InterfacedObject.h"
#include "toolsapi/ToolsAPI.h"

namespace host {

class THost;
class TModule;

enum class TEditorKind { Source, Form };

// An editor of one file, as seen by the observers of the host.
class TFileEditor {
 public:
  TFileEditor(TModule& module, std::string_view fileName);
  TFileEditor(const TFileEditor&) = delete;
  TFileEditor& operator=(const TFileEditor&) = delete;

  virtual TEditorKind Kind() const = 0;
  TFileBuffer& Buffer() { return FBuffer; }
  TModule* Module() const { return FModule; }  // null after the host has closed it
  // Asks the observers to bring the editor to the front. Does nothing after the host has closed it.
  void Show();

 protected:
  virtual ~TFileEditor() = default;

 private:
  friend class TModule;
  TModule* FModule;
  TFileBuffer FBuffer;
};

class TModule {
 public:
  TModule(const TModule&) = delete;
  TModule& operator=(const TModule&) = delete;

  const std::string& FileName() const { return FFileName; }  // empty for a group without a file
  int EditorCount() const { return static_cast<int>(FEditors.size()); }
  TFileEditor& Editor(int index) const { return *FEditors.at(static_cast<size_t>(index)).Editor; }
  bool IsOpen() const { return FHost != nullptr; }
  // Returns whether one of the module's own buffers is modified.
  bool Modified() const;

  // Saves the modified buffers of the module and of the modules that are saved with it. Returns false if one
  // was not saved; the reason is reported (win/Diagnostics.h). This host cannot save under another name:
  // returns false if `changeName` is set. Unless `forceSave` is set, asks the user first
  // (THost::OnQuerySave). If a file was changed on the disk, THost::OnQueryOverwrite decides. A buffer that
  // is reloaded counts as saved; after Cancel nothing is reported.
  [[nodiscard]] bool Save(bool changeName, bool forceSave);
  // Asks the user about each modified module, saves, then closes. Returns false if a file could not be
  // saved or the user cancels. Asks all questions before closing anything.
  bool Close();
  // Reloads the module's files. Returns false if one cannot be read; the others are still reloaded.
  bool Reload();
  virtual toolsapi::TIntf<toolsapi::IOTAModule> Interface() = 0;

 protected:
  TModule(THost& host, std::string_view fileName) : FHost(&host), FFileName(fileName) {}
  virtual ~TModule();

  THost* Host() const { return FHost; }
  void AddEditor(TEditorKind kind, std::string_view fileName);
  toolsapi::TIntf<toolsapi::IOTAEditor> EditorInterface(int index) const;

  // Returns the modules that are saved and closed with this one, including itself.
  virtual std::vector<TModule*> Together() { return {this}; }
  // Removes this module from the lists of the host. Called once; the caller holds a reference.
  virtual void LeaveHost(THost& host) = 0;

 private:
  friend class THost;
  friend class TFileEditor;
  struct TSlot {
    toolsapi::TIntf<toolsapi::IOTAEditor> Interface;
    TFileEditor* Editor;
  };
  [[nodiscard]] bool SaveBuffers();
  [[nodiscard]] bool SaveBuffer(TFileBuffer& buffer) const;
  void Detach();

  THost* FHost;  // null after the module was closed
  std::string FFileName;
  std::vector<TSlot> FEditors;
};

// A module that implements the interface TInterface.
template <class TInterface>
class TModuleObject : public toolsapi::TInterfacedObject<TInterface>, public TModule {
 public:
  std::string GetFileName() override { return FileName(); }
  int GetModuleFileCount() override { return EditorCount(); }
  toolsapi::TIntf<toolsapi::IOTAEditor> GetModuleFileEditor(int index) override {
    return EditorInterface(index);
  }
  int GetOwnerCount() override { return 0; }
  toolsapi::TIntf<toolsapi::IOTAProject> GetOwner(int) override { return nullptr; }
  bool Save(bool changeName, bool forceSave) override { return TModule::Save(changeName, forceSave); }
  bool Close() override { return TModule::Close(); }

  toolsapi::TIntf<toolsapi::IOTAModule> Interface() override {
    return toolsapi::TIntf<toolsapi::IOTAModule>(static_cast<TInterface*>(this));
  }

 protected:
  TModuleObject(THost& host, std::string_view fileName) : TModule(host, fileName) {}
};

// Returns whether `fileName` has the extension of a form: .dfm, .nfm, .xfm or .fmx.
bool IsFormFile(std::string_view fileName);
// Returns the existing forms of the unit `fileName`, a .pas file; empty for all other files.
std::vector<std::string> FormFilesOf(std::string_view fileName);

// An open file: a unit with its source and its existing forms.
class TUnitModule final : public TModuleObject<toolsapi::IOTAModule> {
 public:
  TUnitModule(THost& host, std::string_view fileName);

  // The owners are the projects of the group that list the file, in the group's order.
  int GetOwnerCount() override;
  toolsapi::TIntf<toolsapi::IOTAProject> GetOwner(int index) override;

 protected:
  void LeaveHost(THost& host) override;
};

}  // namespace host
