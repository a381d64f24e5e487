// The File menu of the host's window, and what it does: opens, saves and closes projects and files. Projects,
// files and folders with a project can be dropped on the window too.
//
//   TFileCommands files(menu, host, pages, window);
//   files.OnRun = [this](const std::function<void()>& event) { Run(event); };
//   files.OpenProject("C:\\App\\App.dpr");
#pragma once

#include <QList>
#include <QObject>
#include <QUrl>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "desktop/HostMenu.h"
#include "desktop/RecentFiles.h"

class QWidget;

namespace host {
class THost;
class TModule;
enum class TSaveAnswer;
}  // namespace host

namespace desktop {

class TEditorPages;

class TFileCommands : public QObject {
 public:
  // Adds the items to "FileMenu". Nothing is owned; all must outlive this object. Answers the host's
  // OnQuerySave.
  TFileCommands(THostMenu& menu, host::THost& host, TEditorPages& pages, QWidget& window);

  // Opens a project or a group, a full Windows path, in place of the open one. Returns false if that failed,
  // after a message to the user, or if the user cancelled.
  bool OpenProject(std::string_view fileName);
  // Opens a file of the project, or brings its editor to the front. Raises the exceptions of opening it.
  void OpenFile(const std::string& fileName);
  // The same for each file that still exists.
  void OpenFiles(const std::vector<std::string>& fileNames);
  // Lets the user choose a project or a file, first in `folder`, a host path; empty: in the current folder.
  void AskFile(const QString& folder = {});
  // Opens the project of that index in Recent.
  void OpenRecent(size_t index);
  const std::vector<std::string>& Recent() const { return FRecentFiles.Names(); }

  // Closes everything, after the questions about changes. Returns false if the user cancelled.
  bool CloseAll();
  // Closes the module of a page. For a project, and for a page without an editor, only the page is closed.
  bool ClosePage(int index);
  // Enables the commands that are possible now.
  void ShowState();

  // Runs an event of the user, and shows its exceptions.
  std::function<void(const std::function<void()>& event)> OnRun;
  // Called when the user wants to review the run of an undo file, a full Windows path.
  std::function<void(const std::string& undoFile)> OnReviewRun;
  // Called before a question.
  std::function<void()> OnModal;
  // Saves a module. Returns false if that failed, after a message to the user.
  std::function<bool(host::TModule& module)> OnSave;

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void OpenAny(const QString& hostPath);
  void OpenDropped(QList<QUrl> urls);
  void AskRun();
  void ShowRecent();
  void Save();
  void SaveAll();
  host::TSaveAnswer AskToSave(const host::TModule& module);

  THostMenu& FMenu;
  host::THost& FHost;
  TEditorPages& FPages;
  QWidget& FWindow;
  TRecentFiles FRecentFiles;
  TMenuList FRecentItems;
};

}  // namespace desktop
