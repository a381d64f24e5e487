#include "desktop/CountColumns.h"

#include <QHeaderView>
#include <QStyledItemDelegate>
#include <QTreeView>

#include "desktop/DiffPane.h"

namespace desktop {

namespace {

class TCountDelegate : public QStyledItemDelegate {
 public:
  TCountDelegate(TDiffColour colour, QObject* parent) : QStyledItemDelegate(parent), FColour(colour) {}

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    option->palette.setColor(QPalette::Text, DiffColour(option->palette, FColour));
  }

 private:
  const TDiffColour FColour;
};

}  // namespace

void ShowCountColumns(QTreeView& tree, int added, int removed) {
  tree.setItemDelegateForColumn(added, new TCountDelegate(TDiffColour::AddedText, &tree));
  tree.setItemDelegateForColumn(removed, new TCountDelegate(TDiffColour::RemovedText, &tree));
  QHeaderView& header = *tree.header();
  header.hide();
  header.setStretchLastSection(false);
  header.setMinimumSectionSize(2);
  tree.setMinimumWidth(tree.fontMetrics().averageCharWidth() * 42);
  header.setSectionResizeMode(QHeaderView::Stretch);
  for (const int column : {added, removed}) {
    header.setSectionResizeMode(column, QHeaderView::Fixed);
    header.resizeSection(column, tree.fontMetrics().horizontalAdvance("+99999"));
  }
}

}  // namespace desktop
