#include "desktop/ReviewPage.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPromise>
#include <QSortFilterProxyModel>
#include <QSplitter>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>
#include <QtConcurrentRun>
#include <utility>

#include "MigWizard/run/RExpertRes.h"
#include "desktop/CountColumns.h"
#include "desktop/DiffView.h"
#include "desktop/HostTexts.h"
#include "desktop/QtText.h"
#include "rtl/forms/Application.h"
#include "rtl/text/Registry.h"
#include "win/FileApi.h"
#include "win/paths/Drives.h"

namespace desktop {

namespace {

constexpr char kSideBySide[] = "ReviewSideBySide";
constexpr char kIgnoreSpace[] = "ReviewIgnoreSpace";
constexpr int kTreeWidth = 320;       // pixels at first
constexpr size_t kCountsAtOnce = 32;  // files that are counted before the tree shows their counts

// Returns the files of the rows below `parent`, in the order of display.
void ListFiles(const QAbstractItemModel& model, const QModelIndex& parent, std::vector<int>& files) {
  for (int row = 0; row < model.rowCount(parent); ++row) {
    const QModelIndex index = model.index(row, 0, parent);
    const int file = index.data(TReviewModel::FileRole).toInt();
    if (file >= 0) {
      files.push_back(file);
    } else {
      ListFiles(model, index, files);
    }
  }
}

}  // namespace

TReviewPage::TReviewPage(TUse use, QWidget* parent)
    : QWidget(parent), FUse(use), FModel(new TReviewModel(this)), FFilter(new QSortFilterProxyModel(this)) {
  setObjectName(use == TUse::Review ? "ReviewPage" : "PreviewFiles");
  FFilter->setRecursiveFilteringEnabled(true);
  FFilter->setAutoAcceptChildRows(true);
  FFilter->setFilterCaseSensitivity(Qt::CaseInsensitive);
  FFilter->setSourceModel(FModel);
  auto* const sides = new QSplitter;
  sides->addWidget(NewFileSide());
  sides->addWidget(NewDiffSide());
  sides->setStretchFactor(1, 1);
  sides->setSizes({kTreeWidth, 3 * kTreeWidth});
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins({});
  layout->setSpacing(0);
  layout->addWidget(NewBar());
  layout->addWidget(sides, 1);

  FModel->OnTicked = [this] {
    ShowStatus();
    if (OnTicked) OnTicked();
  };
  connect(FTree->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { ShowSelected(); });
  connect(FFilterField, &QLineEdit::textChanged, this, [this](const QString& text) {
    FFilter->setFilterFixedString(text);
    FTree->expandAll();
    ListShown();
    ShowStatus();
  });
  connect(&FCounting, &QFutureWatcherBase::resultsReadyAt, this, [this](int begin, int end) {
    for (int i = begin; i < end; ++i) {
      const std::vector<TCounts> files = FCounting.resultAt(i);
      for (const TCounts& counts : files) FModel->SetCounts(counts.File, counts.Added, counts.Removed);
    }
  });
  connect(&FCounting, &QFutureWatcherBase::finished, this, [this] { FIsCounting = false; });
  connect(&FComparing, &QFutureWatcherBase::finished, this, [this] {
    FIsComparing = false;
    if (FFile >= 0) ShowDiff(FComparing.result());  // otherwise of files that are no longer shown
  });
}

TReviewPage::~TReviewPage() {
  FComparing.disconnect(this);
  FCounting.disconnect(this);
  FCounting.cancel();
}

QWidget* TReviewPage::NewFileSide() {
  FFilterField = new QLineEdit;
  FFilterField->setObjectName("ReviewFilter");
  FFilterField->setPlaceholderText("Filter files");
  FFilterField->setAccessibleName("Filter files");
  FFilterField->setClearButtonEnabled(true);
  FTree = new QTreeView;
  FTree->setObjectName("ReviewFiles");
  FTree->setAccessibleName("Changed files");
  FTree->setModel(FFilter);
  FTree->setUniformRowHeights(true);
  FTree->setExpandsOnDoubleClick(false);
  FTree->installEventFilter(this);
  ShowCountColumns(*FTree, TReviewModel::Added, TReviewModel::Removed);
  connect(FTree, &QTreeView::doubleClicked, this, [this] { OpenCurrent(); });
  FStatus = new QLabel;
  FStatus->setObjectName("ReviewStatus");
  FStatus->setContentsMargins(6, 2, 6, 4);

  auto* const side = new QWidget;
  auto* const layout = new QVBoxLayout(side);
  layout->setContentsMargins(0, 4, 0, 0);
  layout->setSpacing(4);
  layout->addWidget(FFilterField);
  layout->addWidget(FTree);
  layout->addWidget(FStatus);
  return side;
}

QAction* TReviewPage::AddAction(QToolBar& bar, const char* name, const QString& text,
                                const QKeySequence& keys, const std::function<void()>& use) {
  QAction* const action = bar.addAction(text);
  action->setObjectName(name);
  action->setShortcut(keys);
  action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  if (!keys.isEmpty()) action->setToolTip(text + " (" + keys.toString(QKeySequence::NativeText) + ")");
  addAction(action);  // so that its keys work on the whole page
  connect(action, &QAction::triggered, this, use);
  return action;
}

QToolBar* TReviewPage::NewBar() {
  auto* const bar = new QToolBar;
  bar->setToolButtonStyle(Qt::ToolButtonTextOnly);
  const auto addSwitch = [&](const char* name, const char* text, const QKeySequence& keys, bool isOn) {
    QAction* const action = AddAction(*bar, name, text, keys, [this] {
      SaveSettings();
      ShowSelected();
    });
    action->setCheckable(true);
    action->setChecked(isOn);
    return action;
  };
  AddAction(*bar, "ReviewPrevious", "Previous", Qt::SHIFT | Qt::Key_F8, [this] { GoToChange(-1); });
  AddAction(*bar, "ReviewNext", "Next", Qt::Key_F8, [this] { GoToChange(1); });
  if (FUse == TUse::Review)
    AddAction(*bar, "ReviewReviewed", "Reviewed, Next File", Qt::CTRL | Qt::Key_Return,
              [this] { SetReviewedAndGoOn(); });
  bar->addSeparator();
  const rtl::TRegIniFile reg(mig::SRegistryRoot, rtl::KEY_READ_WRITE);
  FSideBySide = addSwitch("ReviewSideBySide", "Side by Side", Qt::CTRL | Qt::Key_B,
                          reg.ReadBool(kHostSection, kSideBySide, true));
  FWholeFile = addSwitch("ReviewWholeFile", "Whole File", {}, false);
  FIgnoreSpace = addSwitch("ReviewIgnoreSpace", "Ignore Space in Forms", {},
                           reg.ReadBool(kHostSection, kIgnoreSpace, true));
  connect(FIgnoreSpace, &QAction::triggered, this, [this] { Count(); });
  bar->addSeparator();
  AddAction(*bar, "ReviewCopyPatch", "Copy Patch", Qt::CTRL | Qt::SHIFT | Qt::Key_C, [this] { CopyPatch(); });
  AddAction(*bar, "ReviewSavePatch", "Save Patch...", {}, [this] { SavePatch(); });
  // The style's own picture is black in dark themes, too.
  auto* const more = bar->findChild<QToolButton*>("qt_toolbar_ext_button");
  more->setText(QChar(0x00BB));
  more->setToolButtonStyle(Qt::ToolButtonTextOnly);
  return bar;
}

QWidget* TReviewPage::NewDiffSide() {
  FTitle = new QLabel;
  FTitle->setContentsMargins(6, 2, 6, 2);
  FTitle->setTextInteractionFlags(Qt::TextSelectableByMouse);
  FView = new TDiffView(nullptr);
  FView->OnOpen = [this] { OpenCurrent(); };
  auto* const side = new QWidget;
  auto* const layout = new QVBoxLayout(side);
  layout->setContentsMargins({});
  layout->setSpacing(0);
  layout->addWidget(FTitle);
  layout->addWidget(FView, 1);
  return side;
}

void TReviewPage::Show(TReviewSetPtr set, const std::vector<TReviewRows>& rows) {
  FCounting.cancel();
  FFile = -1;
  FRows = rows;
  FModel->Show(std::move(set), rows, FUse == TUse::Preview);
  FTree->expandToDepth(FUse == TUse::Preview ? 1 : 0);
  Count();
  ListShown();
  ShowStatus();
  if (FShown.empty()) {
    FTitle->clear();
    FView->ShowNote("No file was changed.");
  } else {
    SelectFile(FShown.front());
  }
}

bool TReviewPage::IgnoresSpace(const TReviewFile& file) const {
  return file.IsForm && FIgnoreSpace->isChecked();
}

// --- Tasks ---

void TReviewPage::Count() {
  FCounting.cancel();
  FModel->ForgetCounts();
  FIsCounting = true;
  FCounting.setFuture(QtConcurrent::run([set = FModel->Set(), ignoreSpace = FIgnoreSpace->isChecked()](
                                            QPromise<std::vector<TCounts>>& promise) {
    const std::vector<TReviewFile>& files = set->Files();
    std::vector<TCounts> counted;
    for (size_t i = 0; i < files.size() && !promise.isCanceled(); ++i) {
      const TFileDiff diff(files[i].Before, files[i].After, ignoreSpace && files[i].IsForm);
      counted.push_back(
          {static_cast<int>(i), static_cast<int>(diff.Added()), static_cast<int>(diff.Removed())});
      if (counted.size() == kCountsAtOnce || i + 1 == files.size())
        promise.addResult(std::exchange(counted, {}));
    }
  }));
}

void TReviewPage::ShowSelected() {
  const QModelIndex index = FTree->currentIndex();
  const int file = index.isValid() ? index.data(TReviewModel::FileRole).toInt() : -1;
  if (file < 0) return;
  FFile = file;
  FEdit = index.data(TReviewModel::EditIndexRole).toInt();
  const TDiffLayout layout = {.SideBySide = FSideBySide->isChecked(), .WholeFile = FWholeFile->isChecked()};
  const bool ignoreSpace = IgnoresSpace(FModel->Set()->Files()[static_cast<size_t>(file)]);
  FIsComparing = true;
  FComparing.setFuture(QtConcurrent::run([set = FModel->Set(), file, ignoreSpace, layout] {
    const TReviewFile& each = set->Files()[static_cast<size_t>(file)];
    TResult result;
    result.Diff = std::make_shared<TFileDiff>(each.Before, each.After, ignoreSpace);
    result.Page = MakeDiffPage(*result.Diff, layout);
    return result;
  }));
}

void TReviewPage::ShowDiff(TResult result) {
  const auto file = static_cast<size_t>(FFile);
  const TReviewFile& shown = FModel->Set()->Files()[file];
  FTitle->setText(QString("<b>%1</b>&nbsp;&nbsp; %2 added, %3 removed")
                      .arg(ToQt(shown.Path).toHtmlEscaped())
                      .arg(result.Diff->Added())
                      .arg(result.Diff->Removed()));
  if (result.Page.Changes.empty()) {
    FView->ShowNote("Only white space differs.");
    return;
  }
  FView->ShowPage(std::move(result.Page), {.SideBySide = FSideBySide->isChecked()}, FAtLast);
  FAtLast = false;
  if (FEdit >= 0 && file < FRows.size())
    FView->GoToOldLine(FRows[file].Edits[static_cast<size_t>(FEdit)].Line);
}

int TReviewPage::OldLine() const {
  return FView->OldLine();
}

bool TReviewPage::IsIdle() const {
  return !FIsComparing && !FIsCounting;
}

// --- Moving around ---

void TReviewPage::SelectFile(int file) {
  const QModelIndex index = FFilter->mapFromSource(FModel->IndexOf(file));
  if (!index.isValid()) return;
  if (FTree->currentIndex() == index) return ShowSelected();
  FTree->setCurrentIndex(index);
  FTree->scrollTo(index);
}

// Returns the file with changes that the tree shows after (1) or before (-1) the selected one, or -1.
int TReviewPage::NextFile(int step) const {
  const auto count = static_cast<int>(FShown.size());
  int place = step > 0 ? -1 : count;
  for (int i = 0; i < count; ++i) {
    if (FShown[static_cast<size_t>(i)] == FFile) place = i;
  }
  for (place += step; place >= 0 && place < count; place += step) {
    if (FModel->HasChanges(FShown[static_cast<size_t>(place)])) return FShown[static_cast<size_t>(place)];
  }
  return -1;
}

void TReviewPage::GoToChange(int step) {
  if (FView->GoToChange(step)) return;
  const int file = NextFile(step);
  if (file < 0) return;
  FAtLast = step < 0;
  SelectFile(file);
}

void TReviewPage::SetReviewedAndGoOn() {
  if (FFile < 0) return;
  FModel->SetTicked(FFile, true);
  if (FModel->OnTicked) FModel->OnTicked();
  if (const int file = NextFile(1); file >= 0) SelectFile(file);
}

void TReviewPage::OpenCurrent() {
  if (FFile >= 0 && OnOpen)
    OnOpen(FModel->Set()->Files()[static_cast<size_t>(FFile)].FileName, FView->NewLine());
}

bool TReviewPage::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  const auto* const key = static_cast<QKeyEvent*>(event);
  if ((key->key() != Qt::Key_Return && key->key() != Qt::Key_Enter) || key->modifiers() != Qt::NoModifier)
    return QWidget::eventFilter(watched, event);
  OpenCurrent();
  return true;
}

void TReviewPage::ListShown() {
  FShown.clear();
  ListFiles(*FFilter, {}, FShown);
}

void TReviewPage::ShowStatus() {
  if (!FModel->Set()) return;
  const size_t count = FModel->Set()->Files().size();
  QString text = QString("%1 of %2 %3").arg(FModel->TickedFiles()).arg(count);
  text = text.arg(FUse == TUse::Review ? "reviewed" : "to convert");
  if (FShown.size() != count) text += QString(", %1 shown").arg(FShown.size());
  FStatus->setText(text);
}

void TReviewPage::SaveSettings() const {
  rtl::TRegIniFile reg(mig::SRegistryRoot, rtl::KEY_READ_WRITE);
  reg.WriteBool(kHostSection, kSideBySide, FSideBySide->isChecked());
  reg.WriteBool(kHostSection, kIgnoreSpace, FIgnoreSpace->isChecked());
}

// --- Patches ---

void TReviewPage::CopyPatch() const {
  if (FFile < 0) return;
  QApplication::clipboard()->setText(
      ToQt(TReviewSet::PatchOf(FModel->Set()->Files()[static_cast<size_t>(FFile)])));
}

void TReviewPage::SavePatch() {
  if (!FModel->Set()) return;
  const QString picked = QFileDialog::getSaveFileName(this, "Save Patch", "migration.patch",
                                                      "Patches (*.patch *.diff);;All files (*)");
  if (picked.isEmpty()) return;
  const std::string fileName = win::ToWindowsPath(FromQt(picked));
  if (!fileName.empty() && win::ReplaceFileContents(fileName, FModel->Set()->Patch())) return;
  rtl::Application().MessageBox("The patch \"" + FromQt(picked) + "\" could not be written. " +
                                    win::SysErrorMessage(win::GetLastError()),
                                FromQt(window()->windowTitle()), rtl::MB_ICONERROR);
}

}  // namespace desktop
