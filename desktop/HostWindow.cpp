#include "desktop/HostWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>
#include <utility>

#include "desktop/ChangesView.h"
#include "desktop/CodePageChoice.h"
#include "desktop/EditCommands.h"
#include "desktop/EditorPages.h"
#include "desktop/FileCommands.h"
#include "desktop/FindBar.h"
#include "desktop/FrontEnd.h"
#include "desktop/HostTexts.h"
#include "desktop/ProjectTree.h"
#include "desktop/QtText.h"
#include "desktop/RunReview.h"
#include "desktop/SourceEditor.h"
#include "desktop/StartHint.h"
#include "desktop/UnitChoice.h"
#include "desktop/WindowState.h"
#include "rtl/text/SysUtils.h"
#include "toolsapi/HostRuntime.h"
#include "win/Diagnostics.h"

namespace desktop {

namespace {

constexpr int kMessageTime = 10000;  // milliseconds
constexpr int kTreeWidth = 330;      // pixels at first

}  // namespace

THostWindow::THostWindow(TFrontEnd& frontEnd)
    : FFrontEnd(frontEnd),
      FMenu(FHost.MainMenu(), *menuBar(), [this](const std::function<void()>& click) { Run(click); }),
      FPageItems(FMenu, "WindowMenu",
                 [this](size_t index) { FPages->setCurrentIndex(static_cast<int>(index)); }) {
  setObjectName("HostWindow");
  MakeEditors();
  MakePanes();
  MakeMenu();
  FHost.AddObserver(*this);
  FHost.OnShowChanges = [this] { QTimer::singleShot(0, this, [this] { FReview->ShowChanges(); }); };
  FFrontEnd.OnModal = [this] { FProgress.Close(); };
  win::SetDiagnosticsSink([this](std::string_view line) {
    FLastDiagnostic = line;
    FChanges->AddMessage(ToQt(line));
    statusBar()->showMessage(ToQt(line), kMessageTime);
  });
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
  FFiles = std::make_unique<TFileCommands>(FMenu, FHost, *FPages, *this);
  FFiles->OnRun = [this](const std::function<void()>& event) { Run(event); };
  FFiles->OnReviewRun = [this](const std::string& undoFile) { FReview->ShowEarlierRun(undoFile); };
  FFiles->OnModal = [this] { FProgress.Close(); };
  FFiles->OnSave = [this](host::TModule& module) { return Save(module); };
  FEdit = std::make_unique<TEditCommands>(FMenu, *FPages, *FFindBar, *this);
  FCodePages = new TCodePageChoice(FMenu, *FPages, nullptr);
  FCodePages->OnChange = [this] { ShowState(); };
  FPages->OnRefused = [this](const QString& message) { FFrontEnd.ShowException(FromQt(message)); };
  FPages->OnLoaded = [this] { ShowState(); };
  FPages->OnFailed = [this](const std::exception& error) {
    ShowState();
    rtl::Application().HandleException(error);
  };
  FPages->OnLink = [this](const QString& target) { FollowLink(target); };
  FPages->OnMoved = [this] { ShowPosition(); };
  connect(FPages, &QTabWidget::currentChanged, this, [this] { ShowState(); });
  connect(FPages, &QTabWidget::tabCloseRequested, this,
          [this](int index) { Run([&] { FFiles->ClosePage(index); }); });
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
  FReview->OnLog = [this](const std::string& log) { FChanges->ShowLog(ToQt(log)); };
  FReview->OnOpen = [this](const std::string& fileName, int line, int column) {
    Run([&] { OpenFile(fileName); });
    if (TSourceEditor* const page = CurrentEditor()) page->GoToLine(line, column);
  };

  FTree = new TProjectTree(FHost, nullptr);
  FTree->OnOpen = [this](const std::string& fileName) { Run([&] { OpenFile(fileName); }); };
  FTree->OnActivate = [this](host::TProject& project) { Run([&] { FHost.SetActiveProject(project); }); };
  FTreePane = AddPane("TreePane", "Project", FTree, Qt::LeftDockWidgetArea);
  FChanges = new TChangesView(nullptr);
  FChangesPane = AddPane("ChangesPane", "Last run", FChanges, Qt::BottomDockWidgetArea);
  FChangesPane->hide();
  setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
  resizeDocks({FTreePane}, {kTreeWidth}, Qt::Horizontal);
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
}

void THostWindow::ShowOpenPages() {
  std::vector<std::string> captions;
  captions.reserve(static_cast<size_t>(FPages->count()));
  for (int i = 0; i < FPages->count(); ++i) captions.push_back(FromQt(FPages->tabText(i)));
  FPageItems.Show(captions);
}

void THostWindow::ShowState() {
  const host::TProject* const project = FHost.ActiveProject();
  const QString name = project ? ToQt(rtl::ExtractFileName(project->FileName())) + " - " : QString();
  setWindowTitle(name + kHostTitle);
  FPages->ShowTitles();
  TSourceEditor* const page = CurrentEditor();
  FEditorState->setText(page ? page->State() : QString());
  FFiles->ShowState();
  ShowOpenPages();
  ShowPosition();
  FPages->SetHint(StartHint(FMenu.WizardAction(), FHost.Group() != nullptr, FFiles->Recent()));
  FEdit->ShowState();
  FCodePages->ShowState();
}

void THostWindow::FollowLink(const QString& target) {
  if (target == "open") Run([this] { FFiles->AskFile(); });
  if (target == "wizard" && FMenu.WizardAction()) FMenu.WizardAction()->trigger();
  if (target.startsWith("recent:")) FFiles->OpenRecent(target.section(':', 1).toULongLong());
}

void THostWindow::ShowPosition() {
  const TSourceEditor* const page = CurrentEditor();
  FPosition->setText(page ? page->Position() : QString());
}

void THostWindow::ShowAbout() {
  QMessageBox::about(this, kHostTitle,
                     "Opens Delphi projects without the IDE, and runs the migration wizard over them.");
}

// --- User actions ---

void THostWindow::Run(const std::function<void()>& event) {
  const std::vector<std::string> files = FPages->FileNames();
  const std::string project = FHost.ActiveProject() ? FHost.ActiveProject()->FileName() : std::string();
  FWasClosed = false;
  FRecord = TRunRecord();
  try {
    event();
    const host::TProject* const now = FHost.ActiveProject();
    if (FWasClosed && now != nullptr && rtl::SameText(now->FileName(), project)) {
      FFiles->OpenFiles(files);  // the event closed them with their project
    }
  } catch (const std::exception& error) {
    FProgress.Close();
    rtl::Application().HandleException(error);
  }
  FProgress.Close();
  FDiskChanges.Refresh();
  if (!FRecord.IsEmpty()) {
    FChanges->ShowWarnings(ToQt(FRecord.Warnings()).trimmed());
    if (!FRecord.Warnings().empty()) FChangesPane->show();
    resizeDocks({FChangesPane}, {height() / 5}, Qt::Vertical);
    FReview->ShowRun(std::exchange(FRecord, TRunRecord()));
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
                                  kHostTitle, rtl::MB_ICONERROR);
    return false;
  }
}

bool THostWindow::OpenProject(std::string_view fileName) {
  return FFiles->OpenProject(fileName);
}

void THostWindow::OpenFile(const std::string& fileName) {
  FFiles->OpenFile(fileName);
}

bool THostWindow::Save(host::TModule& module) {
  FLastDiagnostic.clear();
  if (module.Save(/*changeName=*/false, /*forceSave=*/true)) return true;
  if (!FLastDiagnostic.empty()) rtl::Application().MessageBox(FLastDiagnostic, kHostTitle, rtl::MB_ICONERROR);
  return false;
}

void THostWindow::closeEvent(QCloseEvent* event) {
  bool isClosed = false;
  Run([&] { isClosed = FFiles->CloseAll(); });
  event->setAccepted(isClosed);
  if (!isClosed) return;
  StoreWindow(*this);
}

bool THostWindow::IsIdle() const {
  return FDiskChanges.IsIdle() && FReview->IsIdle() && FCodePages->IsIdle();
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

void THostWindow::RunConverted(const mig::TRunResult& result) {
  FReview->NoteResult(result);
}

}  // namespace desktop
