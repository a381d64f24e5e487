#include "desktop/HostWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileDialog>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>

#include "desktop/ChangesView.h"
#include "desktop/CodePageChoice.h"
#include "desktop/EditCommands.h"
#include "desktop/EditorPages.h"
#include "desktop/FindBar.h"
#include "desktop/FrontEnd.h"
#include "desktop/ProjectTree.h"
#include "desktop/QtText.h"
#include "desktop/RunReview.h"
#include "desktop/SourceEditor.h"
#include "desktop/UnitChoice.h"
#include "desktop/WindowState.h"
#include "host/HostError.h"
#include "rtl/text/SysUtils.h"
#include "toolsapi/HostRuntime.h"
#include "win/Diagnostics.h"
#include "win/paths/Drives.h"

namespace desktop {

namespace {

constexpr char kTitle[] = "Migration Wizard";
constexpr int kMessageTime = 10000;  // milliseconds
constexpr char kProjectFilter[] =
    "Projects and groups (*.dpr *.dpk *.dproj *.bdsproj *.bpg *.groupproj *.bdsgroup);;All files (*)";

}  // namespace

THostWindow::THostWindow(TFrontEnd& frontEnd)
    : FFrontEnd(frontEnd),
      FMenu(FHost.MainMenu(), *menuBar(), [this](const std::function<void()>& click) { Run(click); }),
      FRecentItems(FMenu, "FileRecent", [this](size_t index) { OpenRecent(index); }),
      FPageItems(FMenu, "WindowMenu",
                 [this](size_t index) { FPages->setCurrentIndex(static_cast<int>(index)); }) {
  setObjectName("HostWindow");
  MakeEditors();
  MakePanes();
  MakeMenu();
  FHost.AddObserver(*this);
  FHost.OnShowChanges = [this] { QTimer::singleShot(0, this, [this] { FReview->ShowChanges(); }); };
  FHost.OnQuerySave = [this](const host::TModule& module) { return AskToSave(module); };
  FFrontEnd.OnModal = [this] { FProgress.Close(); };
  win::SetDiagnosticsSink([this](std::string_view line) {
    FLastDiagnostic = line;
    FChanges->AddMessage(ToQt(line));
    statusBar()->showMessage(ToQt(line), kMessageTime);
  });
  setAcceptDrops(true);
  setWindowIcon(WindowIcon());
  RestoreWindow(*this);
  FChangesPane->hide();
  ShowState();
}

THostWindow::~THostWindow() {
  win::SetDiagnosticsSink(nullptr);
  FFrontEnd.OnModal = nullptr;
  FHost.RemoveObserver(*this);
  delete FPages;  // its pages refer to buffers of the host
}

// --- Window contents ---

void THostWindow::MakeEditors() {
  FPages = new TEditorPages(nullptr);
  FFindBar = new TFindBar([this] { return FPages->CurrentEditor(); }, nullptr);
  FEdit = std::make_unique<TEditCommands>(FMenu, *FPages, *FFindBar, *this);
  FCodePages = new TCodePageChoice(FMenu, *FPages, nullptr);
  FCodePages->OnChange = [this] { ShowState(); };
  FPages->OnRefused = [this](const QString& message) { FFrontEnd.ShowException(FromQt(message)); };
  FPages->OnLink = [this](const QString& target) { FollowLink(target); };
  FPages->OnMoved = [this] { ShowPosition(); };
  connect(FPages, &QTabWidget::currentChanged, this, [this] { ShowState(); });
  connect(FPages, &QTabWidget::tabCloseRequested, this,
          [this](int index) { Run([&] { ClosePage(index); }); });
  auto* const middle = new QWidget;
  auto* const layout = new QVBoxLayout(middle);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(FCodePages);
  layout->addWidget(FPages, 1);
  layout->addWidget(FFindBar);
  setCentralWidget(middle);
}

void THostWindow::MakePanes() {
  FReview = std::make_unique<TRunReview>(FHost, *FPages);
  FReview->OnRun = [this](const std::function<void()>& event) { Run(event); };
  FReview->OnPreviewing = [this](const mig::TRunProgress& progress) {
    FProgress.Report("Preview", progress);
  };
  FReview->OnOpen = [this](const std::string& fileName, int line, int column) {
    Run([&] { OpenFile(fileName); });
    TSourceEditor* const page = CurrentEditor();
    if (page == nullptr) return;
    page->GoToLine(line);
    if (column > 1) page->setCursorPosition(line - 1, column - 1);
  };

  FTree = new TProjectTree(FHost, nullptr);
  FTree->OnOpen = [this](const std::string& fileName) { Run([&] { OpenFile(fileName); }); };
  FTree->OnActivate = [this](host::TProject& project) { Run([&] { FHost.SetActiveProject(project); }); };
  FTreePane = AddPane("TreePane", "Project", FTree, Qt::LeftDockWidgetArea);
  FChanges = new TChangesView(nullptr);
  FChangesPane = AddPane("ChangesPane", "Last run", FChanges, Qt::BottomDockWidgetArea);
  FChangesPane->hide();
  setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
  resizeDocks({FTreePane}, {310}, Qt::Horizontal);
  FPosition = new QLabel;
  FPosition->setObjectName("Position");
  statusBar()->addPermanentWidget(FPosition);
  FEditorState = new QLabel;
  FEditorState->setObjectName("EditorState");
  statusBar()->addPermanentWidget(FEditorState);
}

QDockWidget* THostWindow::AddPane(const char* name, const char* title, QWidget* inside,
                                  Qt::DockWidgetArea area) {
  auto* const pane = new QDockWidget(title);
  pane->setObjectName(name);
  pane->setWidget(inside);
  addDockWidget(area, pane);
  return pane;
}

void THostWindow::MakeMenu() {
  const auto save = [this] {
    if (TSourceEditor* const page = CurrentEditor()) static_cast<void>(Save(*page->Editor().Module()));
  };
  const auto saveAll = [this] {
    for (int i = 0; i < FHost.ModuleCount(); ++i) {
      if (!Save(FHost.Module(i))) break;
    }
  };
  const QKeySequence shiftS = Qt::CTRL | Qt::SHIFT | Qt::Key_S;
  FMenu.Add({"FileMenu", "FileOpen", "&Open...", QKeySequence::Open, [this] { AskProject(); }});
  FMenu.Add({"FileMenu", "FileRecent", "Open &Recent"});
  FMenu.AddLine("FileMenu");
  FMenu.Add({"FileMenu", "FileSave", "&Save", QKeySequence::Save, save});
  FMenu.Add({"FileMenu", "FileSaveAll", "Save A&ll", shiftS, saveAll});
  const QKeySequence closeKeys = Qt::CTRL | Qt::Key_F4;
  FMenu.Add({"FileMenu", "FileClose", "&Close", closeKeys, [this] { ClosePage(FPages->currentIndex()); }});
  FMenu.Add({"FileMenu", "FileCloseAll", "Close &Project", {}, [this] { CloseAll(); }});
  FMenu.AddLine("FileMenu");
  FMenu.Add({"FileMenu", "FileExit", "E&xit", Qt::ALT | Qt::Key_F4, [this] { close(); }});
  const auto show = [](QDockWidget* pane) { return [pane] { pane->setVisible(!pane->isVisible()); }; };
  FMenu.Add({"WindowMenu", "WindowTree", "&Project", {}, show(FTreePane)});
  FMenu.Add({"WindowMenu", "WindowChanges", "Last &Run", {}, show(FChangesPane)});
  const QKeySequence migrationKeys = Qt::CTRL | Qt::Key_M;
  FMenu.Add(
      {"WindowMenu", "WindowMigration", "&Migration", migrationKeys, [this] { FReview->ShowMigration(); }});
  FMenu.Add({"WindowMenu", "WindowReview", "&Changes", {}, [this] { FReview->ShowChanges(); }});
  FMenu.Add({"WindowMenu", "WindowFindings", "What Is &Left", {}, [this] { FReview->ShowFindings(); }});
  FMenu.AddLine("WindowMenu");
  FMenu.Add({"HelpMenu", "HelpAbout", "&About", {}, [this] { ShowAbout(); }});
  ShowRecentFiles();
}

void THostWindow::ShowRecentFiles() {
  std::vector<std::string> captions;
  for (const std::string& name : FRecentFiles.Names()) {
    captions.push_back(FromQt(QString("&%1 %2").arg(captions.size() + 1).arg(ToQt(name).replace("&", "&&"))));
  }
  FRecentItems.Show(captions);
  FMenu.Enable("FileRecent", !captions.empty());
}

void THostWindow::ShowOpenPages() {
  std::vector<std::string> captions;
  for (int i = 0; i < FPages->count(); ++i) captions.push_back(FromQt(FPages->tabText(i)));
  FPageItems.Show(captions);
}

void THostWindow::ShowState() {
  const host::TProject* const project = FHost.ActiveProject();
  const QString name = project ? ToQt(rtl::ExtractFileName(project->FileName())) + " - " : QString();
  setWindowTitle(name + kTitle);
  FPages->ShowTitles();
  TSourceEditor* const page = CurrentEditor();
  FEditorState->setText(page ? page->State() : QString());
  const bool isOpen = FHost.Group() != nullptr;
  FMenu.Enable("FileSave", page != nullptr);
  FMenu.Enable("FileClose", FPages->count() > 0);
  FMenu.Enable("FileSaveAll", isOpen);
  FMenu.Enable("FileCloseAll", isOpen);
  ShowOpenPages();
  ShowPosition();
  ShowHint();
  FEdit->ShowState();
  FCodePages->ShowState();
}

void THostWindow::ShowHint() {
  const QAction* const wizard = FMenu.WizardAction();
  const QString start = wizard == nullptr ? QString()
                                          : QString("<p>Start the <a href='wizard'>%1</a>&nbsp; (%2)</p>")
                                                .arg(wizard->text().remove('&'),
                                                     wizard->shortcut().toString(QKeySequence::NativeText));
  if (FHost.Group() != nullptr)
    return FPages->SetHint("<p>Open a unit or a form in the project's tree</p>" + start);
  QString recent;
  for (size_t i = 0; i < FRecentFiles.Names().size(); ++i) {
    recent +=
        QString("<br><a href='recent:%1'>%2</a>").arg(i).arg(ToQt(FRecentFiles.Names()[i]).toHtmlEscaped());
  }
  if (!recent.isEmpty()) recent = "<p>Recent projects" + recent + "</p>";
  FPages->SetHint("<p><a href='open'>Open a project</a>&nbsp; (Ctrl+O), or drop it here</p>" + recent +
                  start);
}

void THostWindow::FollowLink(const QString& target) {
  if (target == "open") Run([this] { AskProject(); });
  if (target == "wizard" && FMenu.WizardAction()) FMenu.WizardAction()->trigger();
  if (target.startsWith("recent:")) OpenRecent(target.section(':', 1).toULongLong());
}

void THostWindow::ShowPosition() {
  const TSourceEditor* const page = CurrentEditor();
  FPosition->setText(page ? page->Position() : QString());
}

void THostWindow::ShowAbout() {
  QMessageBox::about(this, kTitle,
                     "Opens Delphi projects without the IDE, and runs the migration wizard over them.");
}

// --- User actions ---

void THostWindow::Run(const std::function<void()>& event) {
  const std::vector<std::string> files = FPages->FileNames();
  const std::string project = FHost.ActiveProject() ? FHost.ActiveProject()->FileName() : std::string();
  FWasClosed = false;
  FRecord.Clear();
  try {
    event();
    const host::TProject* const now = FHost.ActiveProject();
    if (FWasClosed && now != nullptr && rtl::SameText(now->FileName(), project)) ReopenFiles(files);
  } catch (const std::exception& error) {
    FProgress.Close();
    rtl::Application().HandleException(error);
  }
  FProgress.Close();
  FDiskChanges.Refresh();
  if (!FRecord.IsEmpty()) {
    FChanges->ShowRun(FRecord);
    FReview->ShowRun(FRecord);
    if (!FRecord.Warnings().empty()) FChangesPane->show();
    resizeDocks({FChangesPane}, {height() / 5}, Qt::Vertical);
    FRecord.Clear();
  }
  ShowState();
}

// Starts the wizard with this unit as the only marked one.
void THostWindow::Convert(host::TProject& project, const std::string& unit) {
  FHost.SetActiveProject(project);
  FFrontEnd.OnForm = [&](rtl::TForm& form) { ChooseUnit(form, project, unit); };
  FMenu.WizardAction()->trigger();
  FFrontEnd.OnForm = nullptr;
}

// Shows the files again that an event closed with their project, if it is open again, as after a restore.
void THostWindow::ReopenFiles(const std::vector<std::string>& fileNames) {
  for (const std::string& fileName : fileNames) {
    if (rtl::FileExists(fileName)) OpenFile(fileName);
  }
}

bool THostWindow::LoadWizard(std::string_view fileName) {
  try {
    FHost.LoadWizardModule(fileName);
    FMenu.Sync();
    if (QAction* const wizard = FMenu.WizardAction()) {
      wizard->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_M);
      FTree->OnConvert = [this](host::TProject& project, const std::string& unit) { Convert(project, unit); };
    }
    ShowState();
    return true;
  } catch (const std::exception& error) {
    rtl::Application().MessageBox("The migration wizard is not available.\n" + std::string(error.what()),
                                  kTitle, rtl::MB_ICONERROR);
    return false;
  }
}

void THostWindow::AskProject() {
  const QString picked = QFileDialog::getOpenFileName(this, "Open", {}, kProjectFilter);
  if (!picked.isEmpty()) OpenAny(picked);
}

// Opens a project, or any other file in an editor.
void THostWindow::OpenAny(const QString& hostPath) {
  const std::string fileName = win::ToWindowsPath(FromQt(hostPath));
  if (fileName.empty())
    throw host::EHostError("\"" + FromQt(hostPath) + "\" cannot be written as a Windows path.");
  if (host::ProjectKindOf(fileName) != host::TProjectKind::None) {
    OpenProject(fileName);
  } else {
    OpenFile(fileName);
  }
}

bool THostWindow::OpenProject(std::string_view fileName) {
  bool isOpen = false;
  Run([&] {
    isOpen = FHost.OpenProject(fileName, /*newGroup=*/true);
    if (isOpen) FRecentFiles.Add(fileName);
  });
  ShowRecentFiles();
  return isOpen;
}

void THostWindow::OpenRecent(size_t index) {
  const std::string project = FRecentFiles.Names()[index];
  if (!OpenProject(project) && !rtl::FileExists(project)) FRecentFiles.Remove(project);
  ShowRecentFiles();
}

void THostWindow::OpenFile(const std::string& fileName) {
  host::TModule& module =
      FHost.OpenModule(host::IsFormFile(fileName) ? rtl::ChangeFileExt(fileName, ".pas") : fileName);
  for (int i = 0; i < module.EditorCount(); ++i) {
    if (rtl::SameText(module.Editor(i).Buffer().FileName(), fileName)) return FPages->Show(module.Editor(i));
  }
  if (module.EditorCount() > 0) FPages->Show(module.Editor(0));
}

bool THostWindow::Save(host::TModule& module) {
  FLastDiagnostic.clear();
  if (module.Save(/*changeName=*/false, /*forceSave=*/true)) return true;
  if (!FLastDiagnostic.empty()) rtl::Application().MessageBox(FLastDiagnostic, kTitle, rtl::MB_ICONERROR);
  return false;
}

// Closes the module of the page's editor. For a project, and for a page without an editor, only the page is
// closed.
bool THostWindow::ClosePage(int index) {
  FPages->setCurrentIndex(index);
  if (TSourceEditor* const page = FPages->EditorAt(index)) {
    host::TModule& module = *page->Editor().Module();
    if (dynamic_cast<host::TProject*>(&module) == nullptr) return module.Close();
  }
  if (index >= 0) FPages->RemovePage(index);
  return true;
}

bool THostWindow::CloseAll() {
  if (host::TProjectGroup* const group = FHost.Group()) {
    if (!group->host::TModule::Close()) return false;
  }
  while (!FHost.Units().empty()) {
    if (!FHost.Units().front()->host::TModule::Close()) return false;
  }
  return true;
}

host::TSaveAnswer THostWindow::AskToSave(const host::TModule& module) {
  FProgress.Close();
  const auto answer =
      QMessageBox::question(this, "Confirm", "Save changes to " + ToQt(module.FileName()) + "?",
                            QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
  if (answer == QMessageBox::Yes) return host::TSaveAnswer::Yes;
  return answer == QMessageBox::No ? host::TSaveAnswer::No : host::TSaveAnswer::Cancel;
}

void THostWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void THostWindow::dropEvent(QDropEvent* event) {
  const QList<QUrl> urls = event->mimeData()->urls();
  Run([&] {
    for (const QUrl& url : urls) {
      if (url.isLocalFile()) OpenAny(url.toLocalFile());
    }
  });
}

void THostWindow::closeEvent(QCloseEvent* event) {
  bool isClosed = false;
  Run([&] { isClosed = CloseAll(); });
  event->setAccepted(isClosed);
  if (!isClosed) return;
  StoreWindow(*this);
}

TSourceEditor* THostWindow::CurrentEditor() const {
  return FPages->CurrentEditor();
}

// --- Notifications of the host ---

void THostWindow::ProjectOpened() {
  FTree->Fill();
  FCodePages->SetProject(FHost.ActiveProject());
  FReview->ShowProject();
  ShowState();
}

void THostWindow::ProjectClosed() {
  FWasClosed = true;
  FPages->RemoveClosed();
  FTree->Fill();
  FReview->ShowProject();
  ShowState();
}

void THostWindow::ActiveProjectChanged() {
  FTree->MarkActive();
  FReview->ShowProject();
  ShowState();
}

void THostWindow::ModuleClosed(host::TModule&) {
  FPages->RemoveClosed();
}

void THostWindow::BufferChanged(host::TFileBuffer& buffer) {
  if (TSourceEditor* const page = FPages->EditorOf(buffer)) page->BufferChanged();
  ShowState();
}

void THostWindow::EditorShown(host::TFileEditor& editor) {
  FPages->Show(editor);
  ShowState();
}

void THostWindow::MenuChanged() {
  FMenu.Sync();
}

void THostWindow::RunAdvanced(const toolsapi::TRunStep& step) {
  FRecord.Note(step.FileName);
  FRecord.NoteLog(step.LogFileName);
  FProgress.Report(std::string(step.Title),
                   {step.Done, step.Known, step.FileName, step.Phase, step.Done, step.Known});
}

void THostWindow::RunWarning(std::string_view message) {
  FRecord.NoteWarning(message);
}

void THostWindow::RunConverted(const mig::TRunAccount& account) {
  FReview->NoteAccount(account);
}

}  // namespace desktop
