#include "desktop/FindingsPage.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSortFilterProxyModel>
#include <QSplitter>
#include <QStyledItemDelegate>
#include <QTreeView>
#include <QVBoxLayout>

#include "MigWizard/passes/FindingRules.h"
#include "desktop/QtText.h"
#include "rtl/forms/Application.h"
#include "win/FileApi.h"
#include "win/paths/Drives.h"

namespace desktop {

// Sorts the findings, and hides those without the text in any column, and done ones if wanted.
class TFindingsFilter : public QSortFilterProxyModel {
 public:
  explicit TFindingsFilter(TFindingsModel& model) : QSortFilterProxyModel(&model) {
    setRecursiveFilteringEnabled(true);
    setFilterKeyColumn(-1);
    setFilterCaseSensitivity(Qt::CaseInsensitive);
    setSortCaseSensitivity(Qt::CaseInsensitive);
    setSortRole(TFindingsModel::SortRole);
    setSourceModel(&model);
  }
  void HideDone(bool isHidden) {
    FHidesDone = isHidden;
    invalidateFilter();
  }

 protected:
  // A group is shown if one of its findings is.
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override {
    const QModelIndex index = sourceModel()->index(row, 0, parent);
    if (static_cast<TFindingsModel*>(sourceModel())->FindingAt(index) == nullptr) return false;
    if (FHidesDone && index.data(TFindingsModel::DoneRole).toBool()) return false;
    return QSortFilterProxyModel::filterAcceptsRow(row, parent);
  }

 private:
  bool FHidesDone = false;
};

namespace {

// Cuts a place in its middle, because the line is at its end.
class TPlaceDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    option->textElideMode = Qt::ElideMiddle;
  }
};

constexpr char kNotKept[] =
    "The findings of this run are not known: they are kept only for runs that are started in this window. "
    "Preview the "
    "migration, or use \"kvamigrate check\", to see what is left now.";

// Returns a line of the page with the advice.
QString Row(const char* title, const std::string& text, bool isSource) {
  if (text.empty()) return {};
  const QString shown = ToQt(text).toHtmlEscaped();
  return QString("<tr><td style='padding-right:12px'>%1</td><td>%2</td></tr>")
      .arg(title, isSource ? "<code>" + shown + "</code>" : shown);
}

}  // namespace

TFindingsPage::TFindingsPage(QWidget* parent)
    : QWidget(parent),
      FModel(new TFindingsModel(this)),
      FFilter(new TFindingsFilter(*FModel)),
      FTable(new QTreeView),
      FStatus(new QLabel),
      FAdvice(new QLabel) {
  setObjectName("FindingsPage");
  FTable->setObjectName("Findings");
  FTable->setAccessibleName("What is left");
  FTable->setModel(FFilter);
  FTable->setUniformRowHeights(true);
  FTable->setSortingEnabled(true);
  FTable->setAlternatingRowColors(true);
  FTable->setExpandsOnDoubleClick(false);
  FTable->setItemDelegateForColumn(TFindingsModel::Place, new TPlaceDelegate(FTable));
  FTable->sortByColumn(-1, Qt::AscendingOrder);
  const int unit = fontMetrics().averageCharWidth();
  const int widths[] = {32, 9, 36, 20};
  for (int i = 0; i < 4; ++i) FTable->header()->resizeSection(i, widths[i] * unit);

  FAdvice->setObjectName("Advice");
  FAdvice->setTextFormat(Qt::RichText);
  FAdvice->setWordWrap(true);
  FAdvice->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  FAdvice->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  FAdvice->setContentsMargins(8, 8, 8, 8);
  auto* const advice = new QScrollArea;
  advice->setWidget(FAdvice);
  advice->setWidgetResizable(true);
  advice->setFrameShape(QFrame::NoFrame);
  auto* const sides = new QSplitter(Qt::Vertical);
  sides->addWidget(FTable);
  sides->addWidget(advice);
  sides->setStretchFactor(0, 1);
  sides->setSizes({500, 150});
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 4, 0, 0);
  layout->addWidget(NewBar());
  layout->addWidget(sides, 1);

  connect(FTable, &QTreeView::activated, this, [this] { OpenCurrent(); });
  connect(FTable, &QTreeView::clicked, this, [this](const QModelIndex& index) {
    if (index.column() == TFindingsModel::Place) OpenCurrent();
  });
  connect(FTable->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { ShowAdvice(); });
  FModel->OnTicked = [this] {
    ShowStatus();
    if (OnTicked) OnTicked();
  };
}

TFindingsPage::~TFindingsPage() {
  FTable->selectionModel()->disconnect(this);
}

QWidget* TFindingsPage::NewBar() {
  auto* const field = new QLineEdit;
  field->setObjectName("FindingsFilter");
  field->setPlaceholderText("Filter by rule, file, object or text");
  field->setAccessibleName("Filter findings");
  field->setClearButtonEnabled(true);
  auto* const groups = new QComboBox;
  groups->setObjectName("FindingsGroups");
  groups->setAccessibleName("Groups");
  groups->addItems({"No groups", "Groups by rule", "Groups by file"});
  groups->setCurrentIndex(1);
  auto* const hideDone = new QCheckBox("&Hide done");
  hideDone->setObjectName("FindingsHideDone");
  FExport = new QPushButton("E&xport...");
  FExport->setObjectName("FindingsExport");
  FStatus->setObjectName("FindingsStatus");
  connect(field, &QLineEdit::textChanged, this, [this](const QString& text) {
    FFilter->setFilterFixedString(text);
    if (!text.isEmpty()) FTable->expandAll();
  });
  connect(groups, &QComboBox::currentIndexChanged, this, [this](int index) {
    FModel->SetGrouping(static_cast<TFindingsModel::TGrouping>(index));
    FTable->setRootIsDecorated(index != 0);
  });
  connect(hideDone, &QCheckBox::toggled, this, [this](bool isOn) { FFilter->HideDone(isOn); });
  connect(FExport, &QPushButton::clicked, this, [this] { AskExport(); });
  auto* const bar = new QWidget;
  auto* const layout = new QHBoxLayout(bar);
  layout->setContentsMargins(4, 0, 4, 0);
  layout->addWidget(field, 1);
  for (QWidget* const widget : std::initializer_list<QWidget*>{groups, hideDone, FStatus, FExport})
    layout->addWidget(widget);
  return bar;
}

void TFindingsPage::Show(TReportPtr report, TReviewMarks& marks) {
  static const report::TReport kNone;
  FModel->Show(report ? *report : kNone, marks);
  FReport = std::move(report);
  FExport->setEnabled(FReport != nullptr);
  ShowStatus();
  ShowAdvice();
}

void TFindingsPage::ShowStatus() {
  FStatus->setText(FReport
                       ? QString("%1 left, %2 done").arg(FModel->Count() - FModel->Done()).arg(FModel->Done())
                       : QString());
}

void TFindingsPage::ShowAdvice() {
  const mig::TFinding* const finding = FModel->FindingAt(FFilter->mapToSource(FTable->currentIndex()));
  if (finding == nullptr) {
    FAdvice->setText(!FReport               ? QString(kNotKept)
                     : FModel->Count() == 0 ? QString("Nothing is left to do by hand.")
                                            : QString("Select a row to see what can be done about it."));
    return;
  }
  FAdvice->setText("<table>" + Row("What", mig::MessageOf(*finding), false) +
                   Row("Advice", mig::AdviceOf(*finding), false) + Row("Before", finding->Before, true) +
                   Row("After", finding->After, true) + "</table>");
}

void TFindingsPage::OpenCurrent() {
  const QModelIndex index = FFilter->mapToSource(FTable->currentIndex());
  const mig::TFinding* const finding = FModel->FindingAt(index);
  if (finding == nullptr) {
    FTable->setExpanded(FTable->currentIndex(), !FTable->isExpanded(FTable->currentIndex()));
  } else if (OnOpen) {
    OnOpen(FModel->FileAt(index)->FileName, static_cast<int>(finding->Line),
           static_cast<int>(finding->Column));
  }
}

QString TFindingsPage::Export(const QString& fileName) const {
  try {
    const std::string path = win::ToWindowsPath(FromQt(fileName));
    const std::string text = report::MakeReport(*FReport, FromQt(fileName));
    if (!path.empty() && win::ReplaceFileContents(path, text)) return {};
    return ToQt("The report \"" + FromQt(fileName) + "\" could not be written. " +
                win::SysErrorMessage(win::GetLastError()));
  } catch (const report::EReport& error) {
    return ToQt(error.what());
  }
}

void TFindingsPage::AskExport() {
  const QString picked =
      QFileDialog::getSaveFileName(this, "Export Findings", "report.html",
                                   "Web page (*.html);;JSON (*.json);;SARIF (*.sarif);;All files (*)");
  if (picked.isEmpty()) return;
  const QString message = Export(picked);
  if (!message.isEmpty())
    rtl::Application().MessageBox(FromQt(message), FromQt(window()->windowTitle()), rtl::MB_ICONERROR);
}

}  // namespace desktop
