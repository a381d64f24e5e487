// The findings of a run as a table, in groups if wanted. The first column has a tick: done.
#pragma once

#include <string>
#include <vector>

#include "desktop/ReviewMarks.h"
#include "desktop/TickModel.h"
#include "report/Report.h"

namespace desktop {

class TFindingsModel : public TTickModel {
 public:
  enum TColumn { Rule, Level, Place, Object, Message };
  enum class TGrouping { None, ByRule, ByFile };
  // Roles of an index: its value for sorting, and whether it is done.
  enum TRole { SortRole = Qt::UserRole, DoneRole };

  explicit TFindingsModel(QObject* parent)
      : TTickModel({"Rule", "Level", "Place", "Object", "What is left"}, parent) {}

  // Shows the findings of `report`, with the ticks of `marks`. Neither is owned; both must outlive their use.
  void Show(const report::TReport& report, TReviewMarks& marks);
  void SetGrouping(TGrouping grouping);

  // Returns the finding of a row and its file, or null for the row of a group.
  const mig::TFinding* FindingAt(const QModelIndex& index) const;
  const mig::TFileReport* FileAt(const QModelIndex& index) const;
  int Count() const { return static_cast<int>(FEntries.size()); }
  int Done() const;

  QModelIndex index(int row, int column, const QModelIndex& parent) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 protected:
  void SetTick(const QModelIndex& index, bool isTicked) override;

 private:
  struct TEntry {
    const mig::TFileReport* File;
    const mig::TFinding* Finding;
    std::string Path;
    std::string Fingerprint;
    int Group = 0;
    int Row = 0;  // in its group
  };
  struct TGroup {
    QString Title;
    std::vector<int> Entries;
  };
  void MakeGroups();
  const TEntry* EntryAt(const QModelIndex& index) const;
  bool IsDone(const TEntry& entry) const;
  void SetDone(int entry, bool isDone);
  Qt::CheckState TickOf(const QModelIndex& index) const;
  QString TextOf(const TEntry& entry, int column) const;

  TReviewMarks* FMarks = nullptr;
  TGrouping FGrouping = TGrouping::ByRule;
  std::vector<TEntry> FEntries;
  std::vector<TGroup> FGroups;  // without grouping a single one, which has no row
};

}  // namespace desktop
