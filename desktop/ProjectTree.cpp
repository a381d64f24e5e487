#include "desktop/ProjectTree.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QStyledItemDelegate>
#include <QTreeView>
#include <QUrl>
#include <QVBoxLayout>

#include "desktop/QtText.h"
#include "host/Host.h"
#include "win/paths/Drives.h"

namespace desktop {

namespace {

using TKind = TProjectModel::TKind;

constexpr int kExpandedUnits = 200;  // up to this number of units all rows are expanded

// Cuts a form's name and class on the right: its middle would tell neither. Names of files are cut in the
// middle.
class TFormDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    option->textElideMode = Qt::ElideRight;
  }
};

// Opens the folder of a file in the file manager.
void Reveal(const std::string& fileName) {
  const QFileInfo file(ToQt(win::ToHostName(fileName)));
  QDesktopServices::openUrl(QUrl::fromLocalFile(file.absolutePath()));
}

}  // namespace

TProjectTree::TProjectTree(host::THost& host, QWidget* parent)
    : QWidget(parent), FModel(host), FFilter(new QLineEdit), FCount(new QLabel), FView(new QTreeView) {
  setObjectName("Project");
  FFilter->setObjectName("TreeFilter");
  FFilter->setPlaceholderText("Filter units");
  FFilter->setClearButtonEnabled(true);
  FCount->setObjectName("TreeCount");
  FCount->setContentsMargins(6, 2, 6, 4);
  FView->setObjectName("ProjectTree");
  FView->setModel(&FModel);
  FView->setHeaderHidden(true);
  FView->setUniformRowHeights(true);
  FView->setExpandsOnDoubleClick(false);
  FView->setTextElideMode(Qt::ElideMiddle);
  FView->setItemDelegateForColumn(TProjectModel::coForm, new TFormDelegate(FView));
  // Names are never cut. The forms get the rest of the width.
  FView->header()->setSectionResizeMode(TProjectModel::coName, QHeaderView::ResizeToContents);
  FView->header()->setResizeContentsPrecision(0);  // visible rows only
  FView->header()->setSectionResizeMode(TProjectModel::coForm, QHeaderView::Stretch);
  FView->header()->setStretchLastSection(false);  // it would keep the width that it had
  FView->setContextMenuPolicy(Qt::CustomContextMenu);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(FFilter);
  layout->addWidget(FView);
  layout->addWidget(FCount);
  connect(FFilter, &QLineEdit::textChanged, this, [this](const QString& text) {
    FModel.SetFilter(text);
    Expand();
  });
  connect(FView, &QTreeView::activated, this, [this](const QModelIndex& index) { Choose(index); });
  connect(FView, &QTreeView::customContextMenuRequested, this,
          [this](const QPoint& position) { ShowItemMenu(position); });
  Expand();
}

void TProjectTree::Fill() {
  FModel.Fill();
  Expand();
}

void TProjectTree::Expand() {
  if (FModel.ShownUnits() <= kExpandedUnits) {
    FView->expandAll();
  } else {
    FView->expandToDepth(FModel.KindOf(FModel.index(0, 0)) == TKind::Group ? 1 : 0);
  }
  const int all = FModel.AllUnits();
  const QString shown = FModel.ShownUnits() == all ? QString() : QString("%L1 of ").arg(FModel.ShownUnits());
  FCount->setText(all == 0 ? QString() : shown + QString("%L1 %2").arg(all).arg(all == 1 ? "unit" : "units"));
  FFilter->setEnabled(all > 0);
}

void TProjectTree::Choose(const QModelIndex& index) {
  const TKind kind = FModel.KindOf(index);
  if (kind == TKind::Project) {
    if (OnActivate) OnActivate(*FModel.ProjectOf(index));
  } else if ((kind == TKind::Unit || kind == TKind::Form) && OnOpen) {
    OnOpen(std::string(FModel.FileOf(index)));  // a copy, because opening may rebuild the tree
  }
}

void TProjectTree::ShowItemMenu(const QPoint& position) {
  const QModelIndex index = FView->indexAt(position);
  const TKind kind = FModel.KindOf(index);
  const std::string fileName = FModel.FileOf(index);
  if (fileName.empty()) return;
  QMenu menu;
  if (kind == TKind::Project) {
    host::TProject& project = *FModel.ProjectOf(index);
    menu.addAction("&Activate", this, [&] { OnActivate(project); });
    menu.addAction("View &Source", this, [&] { OnOpen(project.MainSource()); })
        ->setEnabled(!project.MainSource().empty());
  } else if (kind != TKind::Group) {
    menu.addAction("&Open", this, [&] { Choose(index); })->setEnabled(kind != TKind::MissingUnit);
    if (OnConvert && kind == TKind::Unit)
      menu.addAction("&Convert This Unit...", this, [&] { OnConvert(*FModel.ProjectOf(index), fileName); });
  }
  menu.addSeparator();
  menu.addAction("&Show in File Manager", this, [&] { Reveal(fileName); });
  menu.addAction("Copy &Path", this,
                 [&] { QGuiApplication::clipboard()->setText(ToQt(win::ToHostName(fileName))); });
  menu.exec(FView->viewport()->mapToGlobal(position));
}

}  // namespace desktop
