// A host for tests that records the requests made to it, and a front end that follows a script.
#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "MigWizard/run/ReplaceOptions.h"
#include "qrl/QrlMenu.h"
#include "rtl/forms/Application.h"
#include "rtl/forms/Forms.h"
#include "rtl/forms/Menus.h"
#include "rtl/text/SysUtils.h"
#include "toolsapi/InterfacedObject.h"
#include "toolsapi/ToolsAPI.h"

namespace test {

using namespace toolsapi;  // NOLINT: a host uses nothing else

// The state of the host. If ProjectFile is empty, no project group is open.
struct THostState {
  struct TModule {
    std::string FileName;
    bool HasForm = false;
    bool IsOwned = true;  // belongs to the active project
  };
  std::string ProjectFile;
  std::vector<TModule> Modules;
  bool SaveResult = true;
  bool CloseResult = true;
  std::vector<std::string> Calls;
  rtl::TMainMenu MainMenu;
};

// The operations of every object with a file name.
template <class TInterface>
class TNamed : public TInterfacedObject<TInterface> {
 public:
  TNamed(THostState& state, std::string fileName) : FState(state), FFileName(std::move(fileName)) {}
  std::string GetFileName() override { return FFileName; }

 protected:
  THostState& FState;

 private:
  std::string FFileName;
};

template <class TInterface>
class TEditor : public TNamed<TInterface> {
 public:
  using TNamed<TInterface>::TNamed;
  void Show() override { this->FState.Calls.push_back("Show " + this->GetFileName()); }
};

// A module without files and owners.
template <class TInterface>
class TBareModule : public TNamed<TInterface> {
 public:
  using TNamed<TInterface>::TNamed;
  int GetModuleFileCount() override { return 0; }
  TIntf<IOTAEditor> GetModuleFileEditor(int) override { return nullptr; }
  int GetOwnerCount() override { return 0; }
  TIntf<IOTAProject> GetOwner(int) override { return nullptr; }
  bool Save(bool changeName, bool forceSave) override {
    this->FState.Calls.push_back(rtl::Format("Save %d %d", {changeName, forceSave}));
    return this->FState.SaveResult;
  }
  bool Close() override {
    this->FState.Calls.push_back("Close");
    return this->FState.CloseResult;
  }
};

class TProject : public TBareModule<IOTAProject> {
 public:
  using TBareModule::TBareModule;
  std::string GetFileName() override { return FState.ProjectFile; }
  int GetModuleCount() override { return static_cast<int>(FState.Modules.size()); }
  TIntf<IOTAModuleInfo> GetModule(int index) override {
    return MakeIntf<TNamed<IOTAModuleInfo>>(FState, FState.Modules[static_cast<size_t>(index)].FileName);
  }
};

class TGroup : public TBareModule<IOTAProjectGroup> {
 public:
  TGroup(THostState& state, TIntf<IOTAProject> project)
      : TBareModule(state, ""), FProject(std::move(project)) {}
  TIntf<IOTAProject> GetActiveProject() override { return FProject; }

 private:
  TIntf<IOTAProject> FProject;
};

class TUnitModule : public TBareModule<IOTAModule> {
 public:
  TUnitModule(THostState& state, const THostState::TModule& module, TIntf<IOTAProject> owner)
      : TBareModule(state, module.FileName), FModule(module), FOwner(std::move(owner)) {}
  int GetModuleFileCount() override { return FModule.HasForm ? 2 : 1; }
  TIntf<IOTAEditor> GetModuleFileEditor(int index) override {
    // The form comes first, so that the source editor has to be searched.
    if (FModule.HasForm && index == 0) return MakeIntf<TEditor<IOTAEditor>>(FState, "form");
    return MakeIntf<TEditor<IOTASourceEditor>>(FState, FModule.FileName);
  }
  int GetOwnerCount() override { return FModule.IsOwned ? 1 : 0; }
  TIntf<IOTAProject> GetOwner(int) override { return FOwner; }

 private:
  THostState::TModule FModule;
  TIntf<IOTAProject> FOwner;
};

class TServices : public TInterfacedObject<IOTAModuleServices, IOTAActionServices, INTAServices> {
 public:
  explicit TServices(THostState& state) : FState(state), FProject(MakeIntf<TProject>(state, "")) {}
  int GetModuleCount() override {
    return FState.ProjectFile.empty() ? 0 : 1 + static_cast<int>(FState.Modules.size());
  }
  TIntf<IOTAModule> GetModule(int index) override {
    if (index == GetModuleCount() - 1) return MakeIntf<TGroup>(FState, FProject);
    return MakeIntf<TUnitModule>(FState, FState.Modules[static_cast<size_t>(index)], FProject);
  }
  bool ReloadFile(std::string_view fileName) override { return Record("Reload ", fileName); }
  bool OpenProject(std::string_view fileName, bool newProjGroup) override {
    return Record(newProjGroup ? "Open new " : "Open ", fileName);
  }
  rtl::TMainMenu* GetMainMenu() override { return &FState.MainMenu; }
  void AddActionMenu(std::string_view name, rtl::TAction*, rtl::TMenuItem* menuItem, bool insertAfter,
                     bool insertAsChild) override {
    rtl::TMenuItem* const place = FState.MainMenu.FindItem(name);
    rtl::TMenuItem& parent = insertAsChild ? *place : *place->Parent();
    parent.Insert(insertAsChild ? (insertAfter ? parent.Count() : 0) : parent.IndexOf(*place) + insertAfter,
                  *menuItem);
  }

 private:
  bool Record(const char* call, std::string_view fileName) {
    FState.Calls.push_back(call + std::string(fileName));
    return true;
  }
  THostState& FState;
  TIntf<IOTAProject> FProject;
};

// Sets the host's services for the duration of a test.
class THostInForce {
 public:
  explicit THostInForce(THostState& state) {
    BorlandIDEServices = TIntf<IOTAModuleServices>(MakeIntf<TServices>(state));
  }
  ~THostInForce() { BorlandIDEServices = nullptr; }
};

// Performs the next step of the script on each form; records every form and message in `shown`.
class TScriptedFrontEnd : public rtl::IFrontEnd, private rtl::IFormView {
 public:
  explicit TScriptedFrontEnd(std::vector<std::string>& shown) : Shown(shown) {
    rtl::Application().SetFrontEnd(this);
  }
  ~TScriptedFrontEnd() override { rtl::Application().SetFrontEnd(nullptr); }

  std::deque<std::function<void(rtl::TForm&)>> Script;
  std::vector<std::string>& Shown;
  std::string Picked;     // the user's choice; empty: the user cancels
  std::string AskedWith;  // the arguments of the last picker
  std::string Focused;    // the name of the control that a form focused last

  void ShowModal(rtl::TForm& form) override {
    Shown.push_back("Form " + form.Name());
    rtl::Assert(!Script.empty(), "A form that the script does not expect");
    const auto step = std::move(Script.front());
    Script.pop_front();
    form.SetView(this);
    step(form);
    form.SetView(nullptr);
    rtl::Assert(form.ModalResult() != rtl::mrNone, "The script leaves the form open");
  }
  void MessageBox(std::string_view text, std::string_view caption, unsigned flags) override {
    Shown.push_back(rtl::Format("Box %d %s: %s", {static_cast<int>(flags), caption, text}));
  }
  void MessageDlg(std::string_view text, rtl::TMsgDlgType type, rtl::TMsgDlgButton,
                  int helpContext) override {
    const bool isPlain = type == rtl::TMsgDlgType::Information && helpContext == 0;
    Shown.push_back((isPlain ? "Information: " : "Other dialog: ") + std::string(text));
  }
  bool SelectDirectory(std::string_view caption, std::string_view root, std::string& directory) override {
    AskedWith = rtl::Format("%s|%s|%s", {caption, root, directory});
    if (!Picked.empty()) directory = Picked;
    return !Picked.empty();
  }
  bool OpenFile(rtl::TOpenDialog& dialog) override {
    AskedWith = rtl::Format("%s|%s|%d%d",
                            {dialog.Filter, dialog.InitialDir, dialog.PathMustExist, dialog.FileMustExist});
    if (!Picked.empty()) dialog.FileName = Picked;
    return !Picked.empty();
  }
  std::deque<std::string> Answers;  // captions of buttons; empty: this front end cannot ask
  std::optional<int> Ask(const rtl::TQuestion& question) override {
    if (Answers.empty()) return std::nullopt;
    std::string shown = "Ask: " + question.Text;
    for (const std::string& reason : question.Reasons) shown += "\n" + reason;
    for (const auto& [label, value] : question.Rows) shown += "\n" + label + ": " + value;
    for (const std::string& line : question.Details) shown += "\n" + line;
    Shown.push_back(shown);
    const auto button = std::find_if(question.Buttons.begin(), question.Buttons.end(), [&](auto& caption) {
      return qrl::RemoveAmpersands(caption) == Answers.front();
    });
    rtl::Assert(button != question.Buttons.end(), "No such button");
    Answers.pop_front();
    return static_cast<int>(button - question.Buttons.begin());
  }
  void ShowException(std::string_view message) override {
    Shown.push_back("Exception " + std::string(message));
  }

 private:
  void ControlChanged(const rtl::TControl&, rtl::TChange) override {}
  void FocusChanged(const rtl::TControl& control) override { Focused = control.Name(); }
  void CaptionChanged() override {}
  void ModalResultChanged() override {}
};

// Returns all options: "DEST|FOLDER|SUBFOLDERS|BACKUP|BACKUP FOLDER|LOG|VIEW|UNITS".
inline std::string Describe(const mig::TReplaceOptions& options) {
  return rtl::Format("%d|%s|%d|%d|%s|%d|%d|%s",
                     {options.Dest, options.Directory, options.IncludeSubDirs, options.MakeBackup,
                      options.BackupDir, options.WriteLog, options.ViewLog, options.UnitNames});
}

// Simulates the user on a form. Steps are separated by "; ". A name clicks the button, box or radio button,
// `name=text` types, `name[2]` clicks the check mark of an entry. The form is idle after each step.
inline void Play(rtl::TForm& form, std::string_view steps) {
  while (!steps.empty()) {
    const size_t end = std::min(steps.find("; "), steps.size());
    const std::string_view step = steps.substr(0, end);
    steps.remove_prefix(std::min(end + 2, steps.size()));
    const size_t name = step.find_first_of("=[");
    rtl::TControl& control = form.Control<rtl::TControl>(step.substr(0, name));
    if (name == std::string_view::npos) {
      dynamic_cast<rtl::TButtonControl&>(control).Click();
    } else if (step[name] == '=') {
      dynamic_cast<rtl::TEdit&>(control).Enter(step.substr(name + 1));
    } else {
      auto& list = dynamic_cast<rtl::TCheckListBox&>(control);
      const int index = std::stoi(std::string(step.substr(name + 1)));
      list.SetChecked(index, !list.Checked(index));
    }
    form.UpdateActions();
  }
}

}  // namespace test
