#include "desktop/ReviewModel.h"

#include <map>

#include "desktop/QtText.h"

namespace desktop {

namespace {

QString FolderOf(const QString& path) {
  const qsizetype slash = path.lastIndexOf('/');
  return slash < 0 ? QString() : path.left(slash);
}

QString NameOf(const QString& path) {
  return path.mid(path.lastIndexOf('/') + 1);
}

}  // namespace

int TReviewModel::AddNode(int parent, TNode node) {
  const int index = static_cast<int>(FNodes.size());
  node.Parent = parent;
  TNode& owner = FNodes[static_cast<size_t>(parent)];
  node.Row = static_cast<int>(owner.Children.size());
  owner.Children.push_back(index);
  FNodes.push_back(std::move(node));
  return index;
}

void TReviewModel::Show(TReviewSetPtr set, const std::vector<TReviewRows>& rows, bool isTicked) {
  beginResetModel();
  FSet = std::move(set);
  FNodes.assign(1, {});
  FFileNodes.clear();
  const Qt::CheckState tick = isTicked ? Qt::Checked : Qt::Unchecked;
  const std::vector<TReviewFile>& files = FSet->Files();

  std::map<size_t, int> sizes;  // of the groups
  for (const TReviewRows& row : rows) ++sizes[row.Group];
  std::map<QString, int> folders;  // nodes of the folders, in their order
  for (const TReviewFile& file : files) folders[FolderOf(ToQt(file.Path))] = 0;
  for (auto& [folder, node] : folders) {
    if (!folder.isEmpty()) node = AddNode(0, {.Title = folder, .Tick = tick});
  }
  std::map<size_t, int> groups;
  for (size_t i = 0; i < files.size(); ++i) {
    const QString path = ToQt(files[i].Path);
    int parent = folders[FolderOf(path)];
    if (i < rows.size() && rows[i].Group != 0 && sizes[rows[i].Group] > 1) {
      int& group = groups[rows[i].Group];
      if (group == 0) group = AddNode(parent, {.Title = NameOf(path).section('.', 0, 0), .Tick = tick});
      parent = group;
    }
    const int node = AddNode(parent, {.Title = NameOf(path), .File = static_cast<int>(i), .Tick = tick});
    FFileNodes.push_back(node);
    if (i >= rows.size()) continue;
    for (size_t j = 0; j < rows[i].Edits.size(); ++j) {
      AddNode(node, {.Title = rows[i].Edits[j].Title,
                     .File = static_cast<int>(i),
                     .Edit = static_cast<int>(j),
                     .Tick = tick});
    }
  }
  endResetModel();
}

const TReviewModel::TNode& TReviewModel::NodeOf(const QModelIndex& index) const {
  return FNodes[index.isValid() ? static_cast<size_t>(index.internalId()) : 0];
}

QModelIndex TReviewModel::IndexOfNode(int node, int column) const {
  if (node <= 0) return {};
  return createIndex(FNodes[static_cast<size_t>(node)].Row, column, static_cast<quintptr>(node));
}

QModelIndex TReviewModel::IndexOf(int file) const {
  return file < 0 || file >= static_cast<int>(FFileNodes.size())
             ? QModelIndex()
             : IndexOfNode(FFileNodes[static_cast<size_t>(file)]);
}

// --- Counts ---

void TReviewModel::SetCounts(int file, int added, int removed) {
  int node = FFileNodes[static_cast<size_t>(file)];
  TNode& own = FNodes[static_cast<size_t>(node)];
  const int moreAdded = added - qMax(0, own.Added);
  const int moreRemoved = removed - own.Removed;
  for (; node > 0; node = FNodes[static_cast<size_t>(node)].Parent) {
    TNode& each = FNodes[static_cast<size_t>(node)];
    each.Added = qMax(0, each.Added) + moreAdded;
    each.Removed += moreRemoved;
    emit dataChanged(IndexOfNode(node, Added), IndexOfNode(node, Removed));
  }
}

void TReviewModel::ForgetCounts() {
  for (TNode& node : FNodes) {
    node.Added = -1;
    node.Removed = 0;
  }
  if (!FNodes.empty() && !FNodes[0].Children.empty())
    emit dataChanged(IndexOfNode(FNodes[0].Children.front(), Added),
                     IndexOfNode(FNodes[0].Children.back(), Removed));
}

bool TReviewModel::HasChanges(int file) const {
  const TNode& node = FNodes[static_cast<size_t>(FFileNodes[static_cast<size_t>(file)])];
  return node.Added != 0 || node.Removed != 0;
}

QString TReviewModel::CountText(const TNode& node, int column) const {
  if (node.Edit >= 0 || node.Added < 0) return {};
  return column == Added ? QString("+%1").arg(node.Added)
                         : QString(QChar(0x2212)) + QString::number(node.Removed);
}

// --- Ticks ---

bool TReviewModel::IsTicked(int file, int edit) const {
  const TNode& node = FNodes[static_cast<size_t>(FFileNodes[static_cast<size_t>(file)])];
  if (edit < 0) return node.Tick == Qt::Checked;
  return FNodes[static_cast<size_t>(node.Children[static_cast<size_t>(edit)])].Tick == Qt::Checked;
}

int TReviewModel::TickedFiles() const {
  int count = 0;
  for (const int node : FFileNodes) count += FNodes[static_cast<size_t>(node)].Tick != Qt::Unchecked ? 1 : 0;
  return count;
}

void TReviewModel::Tick(int node, Qt::CheckState state) {
  TNode& own = FNodes[static_cast<size_t>(node)];
  own.Tick = state;
  emit dataChanged(IndexOfNode(node), IndexOfNode(node), {Qt::CheckStateRole});
  for (const int child : own.Children) Tick(child, state);
}

// Derives the ticks of the rows above `node` from those of their children.
void TReviewModel::TickParents(int node) {
  for (node = FNodes[static_cast<size_t>(node)].Parent; node > 0;
       node = FNodes[static_cast<size_t>(node)].Parent) {
    TNode& own = FNodes[static_cast<size_t>(node)];
    own.Tick = FNodes[static_cast<size_t>(own.Children.front())].Tick;
    for (const int child : own.Children) {
      if (FNodes[static_cast<size_t>(child)].Tick != own.Tick) own.Tick = Qt::PartiallyChecked;
    }
    emit dataChanged(IndexOfNode(node), IndexOfNode(node), {Qt::CheckStateRole});
  }
}

void TReviewModel::SetTicked(int file, bool isTicked) {
  const int node = FFileNodes[static_cast<size_t>(file)];
  Tick(node, isTicked ? Qt::Checked : Qt::Unchecked);
  TickParents(node);
}

void TReviewModel::SetTick(const QModelIndex& index, bool isTicked) {
  const int node = static_cast<int>(index.internalId());
  Tick(node, isTicked ? Qt::Checked : Qt::Unchecked);
  TickParents(node);
}

// --- The model ---

QModelIndex TReviewModel::index(int row, int column, const QModelIndex& parent) const {
  if (FNodes.empty()) return {};
  const std::vector<int>& children = NodeOf(parent).Children;
  if (row < 0 || row >= static_cast<int>(children.size())) return {};
  return createIndex(row, column, static_cast<quintptr>(children[static_cast<size_t>(row)]));
}

QModelIndex TReviewModel::parent(const QModelIndex& index) const {
  return index.isValid() ? IndexOfNode(NodeOf(index).Parent) : QModelIndex();
}

int TReviewModel::rowCount(const QModelIndex& parent) const {
  return FNodes.empty() || parent.column() > 0 ? 0 : static_cast<int>(NodeOf(parent).Children.size());
}

QVariant TReviewModel::data(const QModelIndex& index, int role) const {
  const TNode& node = NodeOf(index);
  switch (role) {
    case Qt::DisplayRole:
      return index.column() == Name ? node.Title : CountText(node, index.column());
    case Qt::CheckStateRole:
      return index.column() == Name ? QVariant(node.Tick) : QVariant();
    case Qt::TextAlignmentRole:
      return index.column() == Name ? QVariant() : QVariant(Qt::AlignRight | Qt::AlignVCenter);
    case Qt::ToolTipRole:
      return node.File < 0 ? node.Title : ToQt(FSet->Files()[static_cast<size_t>(node.File)].FileName);
    case FileRole:
      return node.File;
    case EditIndexRole:
      return node.Edit;
    default:
      return {};
  }
}

}  // namespace desktop
