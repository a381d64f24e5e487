#include "desktop/TickModel.h"

namespace desktop {

Qt::ItemFlags TTickModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  return index.column() == 0 ? flags | Qt::ItemIsUserCheckable : flags;
}

QVariant TTickModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return FTitles[static_cast<size_t>(section)];
}

bool TTickModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::CheckStateRole || index.column() != 0) return false;
  SetTick(index, value.toInt() != Qt::Unchecked);
  if (OnTicked) OnTicked();
  return true;
}

}  // namespace desktop
