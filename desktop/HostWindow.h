// The window of the stand-alone host: menu, project tree, source editors, and the changes made by a run.
//
//   desktop::TFrontEnd frontEnd("Migration Wizard");
//   desktop::THostWindow window(frontEnd);
//   window.show();
//   window.LoadWizard(fileName);    // the wizard's item is in the menu then
//   window.OpenProject(project);
//
// It shows the state of the host, and asks the user whenever the host needs an answer. The wizard always
// comes from a loaded module. No exception leaves an event handler: it is shown, and the program continues.
#pragma once

#include <QMainWindow>
#include <string_view>

#include "desktop/DiskChanges.h"
#include "desktop/HostMenu.h"
#include "desktop/ProgressWindow.h"
#include "desktop/RunRecord.h"
#include "host/Host.h"

class QDockWidget;
class QLabel;

namespace desktop {

class TChangesView;
class TCodePageChoice;
class TEditCommands;
class TEditorPages;
class TFileCommands;
class TFindBar;
class TFrontEnd;
class TProjectTree;
class TRunReview;
class TSourceEditor;

class THostWindow : public QMainWindow, private host::THostObserver {
 public:
  // `frontEnd` must be the application's front end, and outlive the window.
  explicit THostWindow(TFrontEnd& frontEnd);
  ~THostWindow() override;

  // Loads the module with the wizard, a full Windows path. Returns false, after a message to the user, if
  // it cannot be loaded; everything else works without it.
  bool LoadWizard(std::string_view fileName);
  // Opens a project or a group, a full Windows path, in place of the open one. Returns false if that
  // failed, after a message to the user, or if the user cancelled.
  bool OpenProject(std::string_view fileName);
  // Opens a file of the project, or brings its editor to the front. Raises the exceptions of opening it.
  void OpenFile(const std::string& fileName);

  host::THost& Host() { return FHost; }
  TMenuBinding& Menu() { return FMenu.Binding(); }
  // Returns whether no task is reading what a run or another program has changed, or guessing a code page.
  bool IsIdle() const;
  // Returns the current editor, or null.
  TSourceEditor* CurrentEditor() const;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void MakeEditors();
  void MakePanes();
  QDockWidget* AddPane(const char* name, const char* title, QWidget* inside, Qt::DockWidgetArea area);
  void MakeMenu();
  void ShowOpenPages();
  void ShowState();
  void ShowPosition();

  // Handles an event: shows exceptions, and afterwards the changes made by a run.
  void Run(const std::function<void()>& event);
  void FollowLink(const QString& target);
  void Convert(host::TProject& project, const std::string& unit);
  bool Save(host::TModule& module);
  void ShowAbout();

  void ProjectOpened() override;
  void ProjectClosed() override;
  void ActiveProjectChanged() override;
  void ModuleClosed(host::TModule& module) override;
  void BufferChanged(host::TFileBuffer& buffer) override;
  void EditorShown(host::TFileEditor& editor) override;
  void MenuChanged() override;
  void RunAdvanced(const toolsapi::TRunStep& step) override;
  void RunWarning(std::string_view message) override;
  void RunConverted(const mig::TRunResult& result) override;

  TFrontEnd& FFrontEnd;
  host::THost FHost;
  TDiskChanges FDiskChanges{FHost, *this};
  TProgressWindow FProgress;
  TRunRecord FRecord;
  THostMenu FMenu;
  TMenuList FPageItems;
  TProjectTree* FTree = nullptr;
  TEditorPages* FPages = nullptr;
  TFindBar* FFindBar = nullptr;
  TCodePageChoice* FCodePages = nullptr;
  std::unique_ptr<TFileCommands> FFiles;
  std::unique_ptr<TEditCommands> FEdit;
  std::unique_ptr<TRunReview> FReview;
  TChangesView* FChanges = nullptr;
  QDockWidget* FTreePane = nullptr;
  QDockWidget* FChangesPane = nullptr;
  QLabel* FPosition = nullptr;
  QLabel* FEditorState = nullptr;
  std::string FLastDiagnostic;
  bool FWasClosed = false;  // whether a project was closed during the present event
};

}  // namespace desktop
