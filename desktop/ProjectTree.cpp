#include "desktop/ProjectTree.h"

#include <QApplication>
#include <QMenu>
#include <QSet>
#include <QStyle>
#include <array>

#include "desktop/QtText.h"
#include "host/Host.h"
#include "rtl/text/SysUtils.h"

namespace desktop {

namespace {

// The data roles of an item.
constexpr int kFileName = Qt::UserRole;          // full Windows path, empty for a group without a file
constexpr int kProjectIndex = Qt::UserRole + 1;  // of a project's item

QTreeWidgetItem* AddItem(QTreeWidgetItem* parent, const std::string& text, const std::string& fileName,
                         QStyle::StandardPixmap icon) {
  auto* const item = new QTreeWidgetItem(parent, {ToQt(text)});
  item->setData(0, kFileName, ToQt(fileName));
  item->setToolTip(0, ToQt(fileName));
  item->setIcon(0, QApplication::style()->standardIcon(icon));
  return item;
}

// Returns the first form of a unit, or an empty string.
std::string FormOf(const std::string& unit) {
  const std::vector<std::string> forms = host::FormFilesOf(unit);
  return forms.empty() ? std::string() : forms.front();
}

}  // namespace

TProjectTree::TProjectTree(host::THost& host, QWidget* parent) : QTreeWidget(parent), FHost(host) {
  setObjectName("ProjectTree");
  setHeaderHidden(true);
  setContextMenuPolicy(Qt::CustomContextMenu);
  setExpandsOnDoubleClick(false);
  connect(this, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) { Choose(*item); });
  connect(this, &QTreeWidget::customContextMenuRequested, this,
          [this](const QPoint& position) { ShowItemMenu(position); });
}

void TProjectTree::Fill() {
  QSet<QString> folded;
  for (QTreeWidgetItemIterator it(this); *it != nullptr; ++it) {
    if ((*it)->childCount() > 0 && !(*it)->isExpanded()) folded.insert((*it)->data(0, kFileName).toString());
  }
  clear();
  if (host::TProjectGroup* const group = FHost.Group()) {
    QTreeWidgetItem* root = invisibleRootItem();
    if (!group->FileName().empty()) {
      root =
          AddItem(root, rtl::ExtractFileName(group->FileName()), group->FileName(), QStyle::SP_DirHomeIcon);
    }
    for (int i = 0; i < group->Count(); ++i) AddProject(*root, i);
  }
  for (QTreeWidgetItemIterator it(this); *it != nullptr; ++it) {
    (*it)->setExpanded(!folded.contains((*it)->data(0, kFileName).toString()));
  }
  MarkActive();
}

void TProjectTree::AddProject(QTreeWidgetItem& parent, int index) {
  host::TProject& project = (*FHost.Group())[index];
  QTreeWidgetItem* const item =
      AddItem(&parent, rtl::ExtractFileName(project.FileName()), project.FileName(), QStyle::SP_DirIcon);
  item->setData(0, kProjectIndex, index);
  for (const host::TFileReference& unit : project.Units()) {
    QTreeWidgetItem* const unitItem =
        AddItem(item, rtl::ExtractFileName(unit.Name), unit.Name, QStyle::SP_FileIcon);
    const std::string form = FormOf(unit.Name);
    if (form.empty()) continue;
    const std::string name = rtl::ExtractFileName(form);
    AddItem(unitItem, unit.FormName.empty() ? name : name + "  (" + unit.FormName + ")", form,
            QStyle::SP_FileDialogDetailedView);
  }
}

void TProjectTree::MarkActive() {
  for (QTreeWidgetItemIterator it(this); *it != nullptr; ++it) {
    const QVariant index = (*it)->data(0, kProjectIndex);
    if (!index.isValid()) continue;
    QFont shown = font();
    shown.setBold(&(*FHost.Group())[index.toInt()] == FHost.ActiveProject());
    (*it)->setFont(0, shown);
  }
}

void TProjectTree::Choose(const QTreeWidgetItem& item) {
  const QVariant index = item.data(0, kProjectIndex);
  if (index.isValid()) {
    if (OnActivate) OnActivate((*FHost.Group())[index.toInt()]);
  } else if (const std::string fileName = FromQt(item.data(0, kFileName).toString());
             item.parent() != nullptr && OnOpen) {
    OnOpen(fileName);
  }
}

void TProjectTree::ShowItemMenu(const QPoint& position) {
  QTreeWidgetItem* const item = itemAt(position);
  if (item == nullptr) return;
  QMenu menu;
  const QVariant index = item->data(0, kProjectIndex);
  if (index.isValid()) {
    host::TProject& project = (*FHost.Group())[index.toInt()];
    menu.addAction("&Activate", this, [&] { OnActivate(project); })
        ->setEnabled(&project != FHost.ActiveProject());
    menu.addAction("View &Source", this, [&] { OnOpen(project.MainSource()); })
        ->setEnabled(!project.MainSource().empty());
  } else if (item->parent() != nullptr) {
    menu.addAction("&Open", this, [&] { Choose(*item); });
  }
  if (!menu.isEmpty()) menu.exec(viewport()->mapToGlobal(position));
}

}  // namespace desktop
