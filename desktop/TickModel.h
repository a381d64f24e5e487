// The base of the tables with ticks: a tree of rows whose first column has a tick.
#pragma once

#include <QAbstractItemModel>
#include <functional>
#include <vector>

namespace desktop {

class TTickModel : public QAbstractItemModel {
 public:
  // Called after the user has changed ticks.
  std::function<void()> OnTicked;

  int columnCount(const QModelIndex&) const override { return static_cast<int>(FTitles.size()); }
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  // Sets the tick of a row.
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

 protected:
  // `titles` are those of the columns.
  TTickModel(std::vector<const char*> titles, QObject* parent)
      : QAbstractItemModel(parent), FTitles(std::move(titles)) {}
  // Sets the tick of a row and of those below it, and reports the changes to the views.
  virtual void SetTick(const QModelIndex& index, bool isTicked) = 0;

 private:
  const std::vector<const char*> FTitles;
};

}  // namespace desktop
