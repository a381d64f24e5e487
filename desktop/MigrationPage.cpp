#include "desktop/MigrationPage.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include "MigWizard/expert/RunQuestions.h"
#include "MigWizard/run/FileUtils.h"
#include "MigWizard/run/Finally.h"
#include "MigWizard/run/IDEUtils.h"
#include "MigWizard/run/RExpertRes.h"
#include "MigWizard/run/UndoFiles.h"
#include "desktop/FindingsPage.h"
#include "desktop/HostTexts.h"
#include "desktop/QtText.h"
#include "desktop/ReviewPage.h"
#include "rtl/forms/Application.h"
#include "rtl/text/SysUtils.h"

namespace desktop {

namespace {

// Returns the file with the marks of the project's last run, or an empty string if there was no run.
std::string MarksOf(const std::string& folder) {
  const std::vector<std::string> undoFiles = mig::FindUndoFiles(folder);
  return undoFiles.empty() ? std::string()
                           : mig::JoinPath(rtl::ExtractFileDir(undoFiles.front()), kReviewMarksName);
}

}  // namespace

TMigrationPage::TMigrationPage(host::THost& host, QWidget* parent)
    : QWidget(parent),
      FHost(host),
      FDryRun(host),
      FTitle(new QLabel),
      FCounts(new QLabel),
      FNote(new QLabel),
      FResult(new QTabWidget),
      FFiles(new TReviewPage(TReviewPage::TUse::Preview, nullptr)),
      FFindings(new TFindingsPage(nullptr)) {
  setObjectName("MigrationPage");
  FFindings->setObjectName("PreviewFindings");
  FResult->addTab(FFiles, "Files");
  FResult->addTab(FFindings, "What would be left");
  FResult->setDocumentMode(true);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins({});
  layout->setSpacing(0);
  layout->addWidget(NewHead());
  layout->addWidget(FResult, 1);
  layout->addStretch(0);
  FCensus.OnCounted = [this](const TCensus::TCounts& counts) { ShowCounts(counts); };
  FDryRun.OnPreviewing = [this](const mig::TRunProgress& progress) {
    if (OnPreviewing) OnPreviewing(progress);
  };
  FFiles->OnTicked = [this] { UpdateSelection(); };
  FFiles->OnOpen = [this](const std::string& fileName, int) {
    if (OnOpen) OnOpen(fileName, FFiles->OldLine(), 1);
  };
  FFindings->OnOpen = [this](const std::string& fileName, int line, int column) {
    if (OnOpen) OnOpen(fileName, line, column);
  };
  FFindings->OnTicked = [this] { static_cast<void>(FMarks.Save()); };
}

QPushButton* TMigrationPage::NewButton(const char* name, const char* text,
                                       const std::function<void()>& click) {
  auto* const button = new QPushButton(text);
  button->setObjectName(name);
  connect(button, &QPushButton::clicked, this, [this, click] {
    if (OnRun) OnRun(click);
  });
  return button;
}

QWidget* TMigrationPage::NewHead() {
  FPreviewBDE = NewButton("PreviewBDE", "Preview &BDE", [this] { Preview(TFamily::BDE); });
  FPreviewIBX = NewButton("PreviewIBX", "Preview &IBX", [this] { Preview(TFamily::IBX); });
  FConvert = NewButton("ConvertTicked", "&Convert...", [this] { Convert(); });
  QFont large = font();
  large.setPointSizeF(large.pointSizeF() * 1.3);
  large.setBold(true);
  FTitle->setFont(large);
  FCounts->setObjectName("ProjectCounts");
  FCounts->setTextInteractionFlags(Qt::TextSelectableByMouse);
  FCounts->setWordWrap(true);
  FNote->setObjectName("PreviewNote");
  FNote->setWordWrap(true);
  auto* const head = new QWidget;
  auto* const layout = new QVBoxLayout(head);
  layout->setContentsMargins(10, 8, 10, 8);
  layout->addWidget(FTitle);
  layout->addWidget(FCounts);
  auto* const buttons = new QHBoxLayout;
  buttons->addWidget(FPreviewBDE);
  buttons->addWidget(FPreviewIBX);
  buttons->addWidget(FNote, 1);
  buttons->addWidget(FConvert);
  layout->addLayout(buttons);
  return head;
}

// --- The project ---

void TMigrationPage::ShowProject() {
  const host::TProject* const project = FHost.ActiveProject();
  const std::string fileName = project == nullptr ? std::string() : project->FileName();
  FDryRun.Clear();
  FProject = fileName;
  FTitle->setText(project == nullptr ? "No project is open" : ToQt(rtl::ExtractFileName(fileName)));
  FCounts->setText(project == nullptr ? QString() : "Counting its components...");
  std::vector<std::string> units;
  if (project != nullptr) {
    for (const host::TFileReference& unit : project->Units()) units.push_back(unit.Name);
  }
  FCensus.Start(std::move(units));
  ShowPreview();
}

void TMigrationPage::ShowCounts(const TCensus::TCounts& counts) {
  if (FProject.empty()) return;
  FCounts->setText("BDE: " + CountText(counts[0]) + "\nIBX: " + CountText(counts[1]));
  const bool isIBX = counts[1].Objects > counts[0].Objects;
  FPreviewBDE->setDefault(!isIBX);
  FPreviewIBX->setDefault(isIBX);
}

bool TMigrationPage::IsIdle() const {
  return FCensus.IsIdle() && FFiles->IsIdle();
}

// --- The preview ---

// A preview reads the files on the disk.
bool TMigrationPage::MaySave() const {
  int modified = 0;
  for (int i = 0; i < FHost.ModuleCount(); ++i) modified += FHost.Module(i).Modified() ? 1 : 0;
  if (modified == 0) return true;
  return rtl::Application().Ask(
             {.Caption = kHostTitle,
              .Text = modified == 1 ? "One file with changes is saved first."
                                    : std::to_string(modified) + " files with changes are saved first.",
              .Flags = rtl::MB_ICONINFORMATION,
              .Reasons = {"The preview reads the files on the disk. Nothing else is written."},
              .Buttons = {"&Save and Preview", "Cancel"},
              .Cancel = 1}) == 0;
}

void TMigrationPage::Preview(TFamily family) {
  if (!MaySave()) return;
  if (!mig::TIDEUtils::SaveProject()) throw rtl::Exception(mig::SProjectNotSaved);
  bool isStopped = false;
  {
    const mig::TFinally show([this] { ShowPreview(); });  // of what there is, after an exception too
    try {
      FDryRun.Preview(family);
      FMarks = TReviewMarks(MarksOf(FDryRun.Report()->Run.Folder));
    } catch (const rtl::EAbort&) {
      isStopped = true;
    }
  }
  if (isStopped) FNote->setText("The preview was stopped. Nothing was changed.");
}

void TMigrationPage::ShowPreview() {
  const bool isOpen = !FProject.empty();
  FPreviewBDE->setEnabled(isOpen);
  FPreviewIBX->setEnabled(isOpen);
  FResult->setVisible(FDryRun.HasPreview());
  if (FDryRun.HasPreview()) {
    FFiles->Show(FDryRun.Files(), FDryRun.Rows());
    FFindings->Show(FDryRun.Report(), FMarks);
    FResult->setTabText(0, QString("Files (%1)").arg(FDryRun.Files()->Files().size()));
    FResult->setTabText(1, QString("What would be left (%1)").arg(FFindings->Model().Count()));
  }
  UpdateSelection();
}

void TMigrationPage::UpdateSelection() {
  FConvert->setVisible(FDryRun.HasPreview());
  if (!FDryRun.HasPreview()) {
    FNote->setText(FProject.empty() ? QString() : "A preview changes nothing.");
    return;
  }
  const int files = FFiles->Model().TickedFiles();
  FConvert->setEnabled(files > 0);
  QString note = QString("Nothing is changed yet. %1 of %2 files are selected.")
                     .arg(files)
                     .arg(FDryRun.Files()->Files().size());
  for (const mig::TLeftOut& file : FDryRun.LeftOut()) note += "\nLeft out: " + ToQt(file.Message);
  FNote->setText(note);
}

// --- The conversion ---

bool TMigrationPage::Confirm(int files) {
  const std::string backupDir = FDryRun.BackupDir();
  return rtl::Application().Ask(
             {.Caption = kHostTitle,
              .Text = std::to_string(files) + (files == 1 ? " file is converted." : " files are converted."),
              .Flags = rtl::MB_ICONINFORMATION,
              .Reasons = {"Everything without a tick stays as it is. Modified files are saved first."},
              .Rows = {{"Backups", backupDir}},
              .Buttons = {"&Convert", "Cancel"},
              .Cancel = 1}) == 0;
}

void TMigrationPage::Convert() {
  if (!FDryRun.HasPreview()) return;
  if (!mig::AskAboutMissingFiles(mig::TIDEUtils::GetMissingFiles(), kHostTitle)) return;
  if (!Confirm(FFiles->Model().TickedFiles())) return;
  if (!mig::TIDEUtils::SaveProject()) throw rtl::Exception(mig::SProjectNotSaved);
  FDryRun.Convert(FFiles->Model(), [this] {
    ReloadFiles();
    ShowProject();
  });
}

// Makes the editors show the new files.
void TMigrationPage::ReloadFiles() {
  for (const TReviewFile& file : FDryRun.Files()->Files()) {
    if (FHost.FindModule(file.FileName) != nullptr) static_cast<void>(FHost.ReloadFile(file.FileName));
  }
}

}  // namespace desktop
