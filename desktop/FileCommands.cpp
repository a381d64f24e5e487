#include "desktop/FileCommands.h"

#include <QDir>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QMimeData>
#include <QTimer>
#include <QUrl>
#include <algorithm>
#include <utility>

#include "MigWizard/run/UndoFiles.h"
#include "desktop/EditorPages.h"
#include "desktop/QtText.h"
#include "desktop/SourceEditor.h"
#include "host/Host.h"
#include "host/HostError.h"
#include "rtl/text/SysUtils.h"
#include "win/paths/Drives.h"

namespace desktop {

namespace {

constexpr char kFile[] = "FileMenu";
constexpr char kFilter[] =
    "Projects and groups (*.dpr *.dpk *.dproj *.bdsproj *.bpg *.groupproj *.bdsgroup);;All files (*)";

// From the most to the least telling.
constexpr const char* kProjectNames[] = {"*.groupproj", "*.bdsgroup", "*.bpg", "*.dproj",
                                         "*.bdsproj",   "*.dpr",      "*.dpk"};

// Returns the project or group of a folder: the only file of the first kind that the folder has. Empty if
// there are several or none.
QString ProjectIn(const QDir& folder) {
  for (const char* const name : kProjectNames) {
    const QStringList found = folder.entryList({name}, QDir::Files);
    if (!found.isEmpty()) return found.size() == 1 ? folder.filePath(found.constFirst()) : QString();
  }
  return {};
}

std::string WindowsPath(const QString& hostPath) {
  std::string path = win::ToWindowsPath(FromQt(hostPath));
  if (path.empty())
    throw host::EHostError("\"" + FromQt(hostPath) + "\" cannot be written as a Windows path.");
  return path;
}

}  // namespace

TFileCommands::TFileCommands(THostMenu& menu, host::THost& host, TEditorPages& pages, QWidget& window)
    : FMenu(menu),
      FHost(host),
      FPages(pages),
      FWindow(window),
      FRecentItems(menu, "FileRecent", [this](size_t index) { OpenRecent(index); }) {
  const QKeySequence saveAllKeys = Qt::CTRL | Qt::SHIFT | Qt::Key_S;
  const QKeySequence closeKeys = Qt::CTRL | Qt::Key_F4;
  const QKeySequence exitKeys = Qt::ALT | Qt::Key_F4;
  FMenu.Add({kFile, "FileOpen", "&Open...", QKeySequence::Open, [this] { AskFile(); }});
  FMenu.Add({kFile, "FileRecent", "Open &Recent"});
  FMenu.Add({kFile, "FileReview", "Re&view an Earlier Run...", {}, [this] { AskRun(); }});
  FMenu.AddLine(kFile);
  FMenu.Add({kFile, "FileSave", "&Save", QKeySequence::Save, [this] { Save(); }});
  FMenu.Add({kFile, "FileSaveAll", "Save A&ll", saveAllKeys, [this] { SaveAll(); }});
  FMenu.Add({kFile, "FileClose", "&Close", closeKeys, [this] { ClosePage(FPages.currentIndex()); }});
  FMenu.Add({kFile, "FileCloseAll", "Close &Project", {}, [this] { CloseAll(); }});
  FMenu.AddLine(kFile);
  FMenu.Add({kFile, "FileExit", "E&xit", exitKeys, [this] { FWindow.close(); }});
  FHost.OnQuerySave = [this](const host::TModule& module) { return AskToSave(module); };
  FWindow.setAcceptDrops(true);
  FWindow.installEventFilter(this);
  ShowRecent();
}

void TFileCommands::ShowState() {
  const bool isOpen = FHost.Group() != nullptr;
  FMenu.Enable("FileSave", FPages.CurrentEditor() != nullptr);
  FMenu.Enable("FileClose", FPages.count() > 0);
  FMenu.Enable("FileSaveAll", isOpen);
  FMenu.Enable("FileCloseAll", isOpen);
}

// --- Opening ---

void TFileCommands::AskFile(const QString& folder) {
  const QString picked = QFileDialog::getOpenFileName(&FWindow, "Open", folder, kFilter);
  if (!picked.isEmpty()) OpenAny(picked);
}

// Opens a project, the project of a folder, or any other file in an editor.
void TFileCommands::OpenAny(const QString& hostPath) {
  if (QFileInfo(hostPath).isDir()) {
    const QString project = ProjectIn(QDir(hostPath));
    return project.isEmpty() ? AskFile(hostPath) : OpenAny(project);
  }
  const std::string fileName = WindowsPath(hostPath);
  if (host::ProjectKindOf(fileName) != host::TProjectKind::None) {
    OpenProject(fileName);
  } else {
    OpenFile(fileName);
  }
}

// Proposes the last run of the open project.
void TFileCommands::AskRun() {
  const host::TProject* const project = FHost.ActiveProject();
  const std::vector<std::string> runs =
      project ? mig::FindUndoFiles(rtl::ExtractFileDir(project->FileName())) : std::vector<std::string>();
  const QString picked = QFileDialog::getOpenFileName(
      &FWindow, "Review an Earlier Run", runs.empty() ? QString() : ToQt(win::ToHostName(runs.front())),
      "Undo files (*.reu);;All files (*)");
  if (!picked.isEmpty()) OnReviewRun(WindowsPath(picked));
}

bool TFileCommands::OpenProject(std::string_view fileName) {
  bool isOpen = false;
  OnRun([&] {
    isOpen = FHost.OpenProject(fileName, /*newGroup=*/true);
    if (isOpen) FRecentFiles.Add(fileName);
  });
  ShowRecent();
  return isOpen;
}

void TFileCommands::OpenRecent(size_t index) {
  const std::string project = Recent()[index];
  if (!OpenProject(project) && !rtl::FileExists(project)) FRecentFiles.Remove(project);
  ShowRecent();
}

void TFileCommands::ShowRecent() {
  std::vector<std::string> captions;
  for (const std::string& name : Recent()) {
    captions.push_back(FromQt(QString("&%1 %2").arg(captions.size() + 1).arg(ToQt(name).replace("&", "&&"))));
  }
  FRecentItems.Show(captions);
  FMenu.Enable("FileRecent", !captions.empty());
}

void TFileCommands::OpenFile(const std::string& fileName) {
  host::TModule& module =
      FHost.OpenModule(host::IsFormFile(fileName) ? rtl::ChangeFileExt(fileName, ".pas") : fileName);
  for (int i = 0; i < module.EditorCount(); ++i) {
    if (rtl::SameText(module.Editor(i).Buffer().FileName(), fileName)) return FPages.Show(module.Editor(i));
  }
  if (module.EditorCount() > 0) FPages.Show(module.Editor(0));
}

void TFileCommands::OpenFiles(const std::vector<std::string>& fileNames) {
  for (const std::string& fileName : fileNames) {
    if (rtl::FileExists(fileName)) OpenFile(fileName);
  }
}

bool TFileCommands::eventFilter(QObject* object, QEvent* event) {
  const QEvent::Type type = event->type();
  if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop)
    return QObject::eventFilter(object, event);
  auto* const drop = static_cast<QDropEvent*>(event);
  // After a move, the program that the files come from may delete them.
  drop->setDropAction(Qt::CopyAction);
  drop->setAccepted(drop->mimeData()->hasUrls() && drop->dropAction() != Qt::MoveAction);
  if (type == QEvent::Drop && drop->isAccepted()) {
    // That program waits for the end of the event, and opening may ask the user.
    QTimer::singleShot(0, this, [this, urls = drop->mimeData()->urls()] { OpenDropped(urls); });
  }
  return true;
}

// Opens projects first, because they close what was open before. A file that fails does not keep the others
// from being opened.
void TFileCommands::OpenDropped(QList<QUrl> urls) {
  urls.removeIf([](const QUrl& url) { return !url.isLocalFile(); });
  const auto isSource = [](const QUrl& url) {
    const QString path = url.toLocalFile();
    return !QFileInfo(path).isDir() && host::ProjectKindOf(FromQt(path)) == host::TProjectKind::None;
  };
  std::stable_sort(urls.begin(), urls.end(),
                   [&](const QUrl& left, const QUrl& right) { return isSource(left) < isSource(right); });
  for (const QUrl& url : std::as_const(urls)) OnRun([&] { OpenAny(url.toLocalFile()); });
}

// --- Saving and closing ---

void TFileCommands::Save() {
  if (TSourceEditor* const page = FPages.CurrentEditor()) static_cast<void>(OnSave(*page->Editor().Module()));
}

void TFileCommands::SaveAll() {
  for (int i = 0; i < FHost.ModuleCount(); ++i) {
    if (!OnSave(FHost.Module(i))) break;
  }
}

host::TSaveAnswer TFileCommands::AskToSave(const host::TModule& module) {
  if (OnModal) OnModal();
  const auto answer =
      QMessageBox::question(&FWindow, "Confirm", "Save changes to " + ToQt(module.FileName()) + "?",
                            QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
  if (answer == QMessageBox::Yes) return host::TSaveAnswer::Yes;
  return answer == QMessageBox::No ? host::TSaveAnswer::No : host::TSaveAnswer::Cancel;
}

bool TFileCommands::ClosePage(int index) {
  FPages.setCurrentIndex(index);
  if (TSourceEditor* const page = FPages.EditorAt(index)) {
    host::TModule& module = *page->Editor().Module();
    if (dynamic_cast<host::TProject*>(&module) == nullptr) return module.Close();
  }
  if (index >= 0) FPages.RemovePage(index);
  return true;
}

bool TFileCommands::CloseAll() {
  if (host::TProjectGroup* const group = FHost.Group()) {
    if (!group->host::TModule::Close()) return false;
  }
  while (!FHost.Units().empty()) {
    if (!FHost.Units().front()->host::TModule::Close()) return false;
  }
  return true;
}

}  // namespace desktop
