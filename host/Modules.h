// What the host has open, as modules: each has a file name, editors for its files, and owners.
//
// Modules and editors are counted, and clients may hold them longer than the host does. One that the host has
// closed keeps its name and its contents, has no owners, and shows nothing.
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

// An editor of one file, as the host's views see it.
class TFileEditor {
 public:
  enum class TKind { Source, Form };

  TFileEditor(TModule& module, std::string_view fileName);
  TFileEditor(const TFileEditor&) = delete;
  TFileEditor& operator=(const TFileEditor&) = delete;

  virtual TKind Kind() const = 0;
  TFileBuffer& Buffer() { return FBuffer; }
  TModule* Module() const { return FModule; }  // null when the host has closed it
  // Tells the observers to bring it to the front; nothing where the host has closed it.
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
  // Whether a buffer of its own is.
  bool Modified() const;

  // As IOTAModule has it. This host has no way to save under another name: `changeName` gives False. Without
  // `forceSave` the user is asked first (THost::OnQuerySave).
  [[nodiscard]] bool Save(bool changeName, bool forceSave);
  // Asks for each modified buffer what to do with it, then closes; False when something could not be saved or
  // the user wants to go on. Everything is asked before anything is closed.
  bool Close();
  // Takes the modules' files from disk. False if one cannot be read; the others are taken all the same.
  bool Reload();
  virtual toolsapi::TIntf<toolsapi::IOTAModule> Interface() = 0;

 protected:
  TModule(THost& host, std::string_view fileName) : FHost(&host), FFileName(fileName) {}
  virtual ~TModule();

  THost* Host() const { return FHost; }
  void AddEditor(TFileEditor::TKind kind, std::string_view fileName);
  toolsapi::TIntf<toolsapi::IOTAEditor> EditorInterface(int index) const;

  // The modules that are saved and closed with this one, itself among them.
  virtual std::vector<TModule*> Together() { return {this}; }
  // Takes this module off the host's lists. Called once; the caller holds a reference.
  virtual void LeaveHost(THost& host) = 0;

 private:
  friend class THost;
  friend class TFileEditor;
  struct TSlot {
    toolsapi::TIntf<toolsapi::IOTAEditor> Interface;
    TFileEditor* Editor;
  };
  [[nodiscard]] bool SaveBuffers();
  void Detach();

  THost* FHost;  // null when closed
  std::string FFileName;
  std::vector<TSlot> FEditors;
};

// A module behind its interface TInterface.
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

// A file of a project that was opened: a unit with its source and, where they exist, its forms.
class TUnitModule final : public TModuleObject<toolsapi::IOTAModule> {
 public:
  TUnitModule(THost& host, std::string_view fileName);

  // The projects of the group that list the file, in the group's order.
  int GetOwnerCount() override;
  toolsapi::TIntf<toolsapi::IOTAProject> GetOwner(int index) override;

 protected:
  void LeaveHost(THost& host) override;
};

}  // namespace host
