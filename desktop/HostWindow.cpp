#include "desktop/HostWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileDialog>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QStatusBar>
#include <QTabWidget>

#include "MigWizard/run/RExpertRes.h"
#include "desktop/ChangesView.h"
#include "desktop/FrontEnd.h"
#include "desktop/MenuBinding.h"
#include "desktop/ProjectTree.h"
#include "desktop/QtText.h"
#include "desktop/SourceEditor.h"
#include "host/HostError.h"
#include "rtl/text/Registry.h"
#include "rtl/text/SysUtils.h"
#include "toolsapi/HostRuntime.h"
#include "win/Diagnostics.h"
#include "win/paths/Drives.h"

namespace desktop {

namespace {

constexpr char kTitle[] = "Migration Wizard";
constexpr char kSection[] = "Host Window";
constexpr char kGeometry[] = "Geometry";
constexpr int kMessageTime = 10000;  // milliseconds
constexpr char kProjectFilter[] =
    "Projects and groups (*.dpr *.dpk *.dproj *.bdsproj *.bpg *.groupproj *.bdsgroup);;All files (*)";

}  // namespace

THostWindow::THostWindow(TFrontEnd& frontEnd) : FFrontEnd(frontEnd) {
  setObjectName("HostWindow");
  MakePanes();
  MakeMenu();
  FHost.AddObserver(*this);
  FHost.OnQuerySave = [this](const host::TModule& module) { return AskToSave(module); };
  FFrontEnd.OnModal = [this] { FProgress.Close(); };
  win::SetDiagnosticsSink([this](std::string_view line) {
    FLastDiagnostic = line;
    FChanges->AddMessage(ToQt(line));
    statusBar()->showMessage(ToQt(line), kMessageTime);
  });
  const QSize room = screen()->availableSize();
  resize(qMin(1180, room.width() * 9 / 10), qMin(780, room.height() * 9 / 10));
  const rtl::TRegIniFile reg(mig::SRegistryRoot, rtl::KEY_READ_WRITE);
  restoreGeometry(QByteArray::fromBase64(QByteArray::fromStdString(reg.ReadString(kSection, kGeometry, ""))));
  ShowState();
}

THostWindow::~THostWindow() {
  win::SetDiagnosticsSink(nullptr);
  FFrontEnd.OnModal = nullptr;
  FHost.RemoveObserver(*this);
  while (FPages->count() > 0) delete FPages->widget(0);  // the pages refer to buffers of the host
}

// --- Window contents ---

void THostWindow::MakePanes() {
  FPages = new QTabWidget;
  FPages->setObjectName("Editors");
  FPages->setDocumentMode(true);
  FPages->setTabsClosable(true);
  FPages->setMovable(true);
  setCentralWidget(FPages);
  connect(FPages, &QTabWidget::currentChanged, this, [this] { ShowState(); });
  connect(FPages, &QTabWidget::tabCloseRequested, this, [this](int index) {
    FPages->setCurrentIndex(index);
    Run([this] { CloseModule(); });
  });

  const auto addPane = [this](const char* name, const char* title, QWidget* inside, Qt::DockWidgetArea area) {
    auto* const pane = new QDockWidget(title);
    pane->setObjectName(name);
    pane->setWidget(inside);
    addDockWidget(area, pane);
    return pane;
  };
  FTree = new TProjectTree(FHost, nullptr);
  FTree->OnOpen = [this](const std::string& fileName) { Run([&] { OpenFile(fileName); }); };
  FTree->OnActivate = [this](host::TProject& project) { Run([&] { FHost.SetActiveProject(project); }); };
  FTreePane = addPane("TreePane", "Project", FTree, Qt::LeftDockWidgetArea);
  FChanges = new TChangesView(nullptr);
  FChangesPane = addPane("ChangesPane", "Last run", FChanges, Qt::BottomDockWidgetArea);
  FChangesPane->hide();
  setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
  resizeDocks({FTreePane}, {310}, Qt::Horizontal);
  FEditorState = new QLabel;
  statusBar()->addPermanentWidget(FEditorState);
}

rtl::TMenuItem& THostWindow::AddItem(const char* parent, const char* name, const char* caption,
                                     std::function<void()> onClick) {
  rtl::TMainMenu& menu = FHost.MainMenu();
  rtl::TMenuItem& item = menu.NewItem();
  item.SetName(name);
  item.SetCaption(caption);
  if (onClick) item.SetOnClick([click = std::move(onClick)](rtl::TMenuItem&) { click(); });
  rtl::TMenuItem& place = *menu.FindItem(parent);
  place.Insert(place.Count(), item);
  return item;
}

void THostWindow::MakeMenu() {
  AddItem("FileMenu", "FileOpen", "&Open Project...", [this] { AskProject(); });
  AddItem("FileMenu", "FileRecent", "Open &Recent", nullptr);
  AddItem("FileMenu", "FileLine1", "-", nullptr);
  AddItem("FileMenu", "FileSave", "&Save", [this] {
    if (TSourceEditor* const page = CurrentEditor()) static_cast<void>(Save(*page->Editor().Module()));
  });
  AddItem("FileMenu", "FileSaveAll", "Save A&ll", [this] {
    for (int i = 0; i < FHost.ModuleCount(); ++i) {
      if (!Save(FHost.Module(i))) break;
    }
  });
  AddItem("FileMenu", "FileClose", "&Close", [this] { CloseModule(); });
  AddItem("FileMenu", "FileCloseAll", "Close &Project", [this] { CloseAll(); });
  AddItem("FileMenu", "FileLine2", "-", nullptr);
  AddItem("FileMenu", "FileExit", "E&xit", [this] { close(); });
  AddItem("WindowMenu", "WindowTree", "&Project", [this] { FTreePane->setVisible(!FTreePane->isVisible()); });
  AddItem("WindowMenu", "WindowChanges", "Last &Run",
          [this] { FChangesPane->setVisible(!FChangesPane->isVisible()); });
  AddItem("WindowMenu", "WindowLine", "-", nullptr);
  AddItem("HelpMenu", "HelpAbout", "&About", [this] { ShowAbout(); });
  for (int i = 0; i < TRecentFiles::kMost; ++i) {
    const std::string name = "FileRecent" + std::to_string(i);
    FRecentItems.push_back(&AddItem("FileRecent", name.c_str(), "", [this, i] {
      const std::string project = FRecentFiles.Names()[static_cast<size_t>(i)];
      if (!OpenProject(project) && !rtl::FileExists(project)) FRecentFiles.Remove(project);
      ShowRecentFiles();
    }));
  }
  FMenu = std::make_unique<TMenuBinding>(FHost.MainMenu(), *menuBar(),
                                         [this](const std::function<void()>& click) { Run(click); });
  const auto setKeys = [this](const char* name, const QKeySequence& keys) {
    FMenu->ActionOf(*FHost.MainMenu().FindItem(name))->setShortcut(keys);
  };
  setKeys("FileOpen", QKeySequence::Open);
  setKeys("FileSave", QKeySequence::Save);
  setKeys("FileSaveAll", Qt::CTRL | Qt::SHIFT | Qt::Key_S);
  setKeys("FileClose", Qt::CTRL | Qt::Key_F4);
  setKeys("FileExit", Qt::ALT | Qt::Key_F4);
  ShowRecentFiles();
}

void THostWindow::ShowRecentFiles() {
  const std::vector<std::string>& names = FRecentFiles.Names();
  for (size_t i = 0; i < FRecentItems.size(); ++i) {
    FRecentItems[i]->SetCaption(
        i < names.size() ? FromQt(QString("&%1 %2").arg(i + 1).arg(ToQt(names[i]).replace("&", "&&"))) : "");
  }
  FMenu->Sync();
  FMenu->ActionOf(*FHost.MainMenu().FindItem("FileRecent"))->setEnabled(!names.empty());
}

void THostWindow::ShowOpenEditors() {
  const size_t count = static_cast<size_t>(FPages->count());
  while (FWindowItems.size() < count) {
    const int index = static_cast<int>(FWindowItems.size());
    FWindowItems.push_back(&AddItem("WindowMenu", "", "", [this, index] { FPages->setCurrentIndex(index); }));
  }
  for (size_t i = 0; i < FWindowItems.size(); ++i) {
    std::string caption;
    if (i < count) caption = FromQt(FPages->tabText(static_cast<int>(i)));
    if (FWindowItems[i]->Caption() != caption) FWindowItems[i]->SetCaption(caption);
  }
}

void THostWindow::ShowState() {
  const host::TProject* const project = FHost.ActiveProject();
  const QString name = project ? ToQt(rtl::ExtractFileName(project->FileName())) + " - " : QString();
  setWindowTitle(name + kTitle);
  for (int i = 0; i < FPages->count(); ++i) {
    host::TFileBuffer& buffer = Page(i)->Editor().Buffer();
    const QString title = ToQt(rtl::ExtractFileName(buffer.FileName())).replace("&", "&&");
    FPages->setTabText(i, buffer.Modified() ? title + " *" : title);
  }
  TSourceEditor* const page = CurrentEditor();
  FEditorState->setText(page ? page->State() : QString());
  const bool isOpen = FHost.Group() != nullptr;
  const auto enable = [this](const char* item, bool isEnabled) {
    FMenu->ActionOf(*FHost.MainMenu().FindItem(item))->setEnabled(isEnabled);
  };
  if (!FMenu) return;
  enable("FileSave", page != nullptr);
  enable("FileClose", page != nullptr);
  enable("FileSaveAll", isOpen);
  enable("FileCloseAll", isOpen);
  ShowOpenEditors();
}

void THostWindow::ShowAbout() {
  QMessageBox::about(this, kTitle,
                     "Opens Delphi projects without the IDE, and runs the migration wizard over them.");
}

// --- User actions ---

void THostWindow::Run(const std::function<void()>& event) {
  FRecord.Clear();
  try {
    event();
  } catch (const std::exception& error) {
    FProgress.Close();
    rtl::Application().HandleException(error);
  }
  FProgress.Close();
  if (!FRecord.IsEmpty()) {
    FChanges->ShowRun(FRecord);
    FChangesPane->show();
    resizeDocks({FChangesPane}, {height() * 2 / 5}, Qt::Vertical);
    FRecord.Clear();
  }
  ShowState();
}

bool THostWindow::LoadWizard(std::string_view fileName) {
  try {
    FHost.LoadWizardModule(fileName);
    FMenu->Sync();
    return true;
  } catch (const std::exception& error) {
    rtl::Application().MessageBox("The migration wizard is not available.\n" + std::string(error.what()),
                                  kTitle, rtl::MB_ICONERROR);
    return false;
  }
}

void THostWindow::AskProject() {
  const QString picked = QFileDialog::getOpenFileName(this, "Open Project", {}, kProjectFilter);
  if (picked.isEmpty()) return;
  const std::string project = win::ToWindowsPath(FromQt(picked));
  if (project.empty())
    throw host::EHostError("\"" + FromQt(picked) + "\" cannot be written as a Windows path.");
  OpenProject(project);
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

void THostWindow::OpenFile(const std::string& fileName) {
  host::TModule& module =
      FHost.OpenModule(host::IsFormFile(fileName) ? rtl::ChangeFileExt(fileName, ".pas") : fileName);
  for (int i = 0; i < module.EditorCount(); ++i) {
    if (rtl::SameText(module.Editor(i).Buffer().FileName(), fileName)) return ShowEditor(module.Editor(i));
  }
  if (module.EditorCount() > 0) ShowEditor(module.Editor(0));
}

bool THostWindow::Save(host::TModule& module) {
  FLastDiagnostic.clear();
  if (module.Save(/*changeName=*/false, /*forceSave=*/true)) return true;
  rtl::Application().MessageBox(FLastDiagnostic, kTitle, rtl::MB_ICONERROR);
  return false;
}

// Closes the module of the current editor. For a project, only its source page is closed; the project stays
// open.
bool THostWindow::CloseModule() {
  TSourceEditor* const page = CurrentEditor();
  if (page == nullptr) return true;
  host::TModule& module = *page->Editor().Module();
  if (dynamic_cast<host::TProject*>(&module) == nullptr) return module.Close();
  RemovePage(FPages->currentIndex());
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

void THostWindow::closeEvent(QCloseEvent* event) {
  bool isClosed = false;
  Run([&] { isClosed = CloseAll(); });
  event->setAccepted(isClosed);
  if (!isClosed) return;
  rtl::TRegIniFile reg(mig::SRegistryRoot, rtl::KEY_READ_WRITE);
  reg.WriteString(kSection, kGeometry, saveGeometry().toBase64().toStdString());
}

// --- Editors ---

TSourceEditor* THostWindow::Page(int index) const {
  return static_cast<TSourceEditor*>(FPages->widget(index));
}

TSourceEditor* THostWindow::CurrentEditor() const {
  return Page(FPages->currentIndex());
}

TSourceEditor* THostWindow::PageOf(const host::TFileBuffer& buffer) const {
  for (int i = 0; i < FPages->count(); ++i) {
    if (&Page(i)->Editor().Buffer() == &buffer) return Page(i);
  }
  return nullptr;
}

void THostWindow::ShowEditor(host::TFileEditor& editor) {
  TSourceEditor* page = PageOf(editor.Buffer());
  if (page == nullptr) {
    page = new TSourceEditor(editor, this);
    page->OnRefused = [this](const QString& message) { FFrontEnd.ShowException(FromQt(message)); };
    FPages->addTab(page, "");
    FPages->setTabToolTip(FPages->indexOf(page), ToQt(editor.Buffer().FileName()));
  }
  FPages->setCurrentWidget(page);
  page->setFocus();
  ShowState();
}

// Deletes the page only after the current event, which may be the page's own key press.
void THostWindow::RemovePage(int index) {
  TSourceEditor* const page = Page(index);
  FPages->removeTab(index);
  page->deleteLater();
}

void THostWindow::RemoveClosedPages() {
  for (int i = FPages->count() - 1; i >= 0; --i) {
    if (Page(i)->Editor().Module() == nullptr) RemovePage(i);
  }
}

// --- Notifications of the host ---

void THostWindow::ProjectOpened() {
  FTree->Fill();
  ShowState();
}

void THostWindow::ProjectClosed() {
  RemoveClosedPages();
  FTree->Fill();
  ShowState();
}

void THostWindow::ActiveProjectChanged() {
  FTree->MarkActive();
  ShowState();
}

void THostWindow::ModuleClosed(host::TModule&) {
  RemoveClosedPages();
}

void THostWindow::BufferChanged(host::TFileBuffer& buffer) {
  if (TSourceEditor* const page = PageOf(buffer)) page->BufferChanged();
  ShowState();
}

void THostWindow::EditorShown(host::TFileEditor& editor) {
  ShowEditor(editor);
}

void THostWindow::MenuChanged() {
  if (FMenu) FMenu->Sync();
}

void THostWindow::RunAdvanced(const toolsapi::TRunStep& step) {
  FRecord.Note(step.FileName);
  FRecord.NoteLog(step.LogFileName);
  FProgress.Report(std::string(step.Title), {step.Done, step.Known, step.FileName}, step.CanStop);
}

void THostWindow::RunWarning(std::string_view message) {
  FRecord.NoteWarning(message);
}

}  // namespace desktop
