// The tree of changed files: folders, in them units with their forms, in these the edits to choose from. Each
// row has the number of added and removed lines and a tick: "reviewed" after a run, "convert" before it.
#pragma once

#include <vector>

#include "desktop/ReviewSet.h"
#include "desktop/TickModel.h"

namespace desktop {

// An edit of a file, as a row below the file.
struct TReviewEdit {
  QString Title;  // "QMembers: TQuery becomes TKVAQuery"
  int Line = 1;   // in the file before the run
};

// The rows of one file.
struct TReviewRows {
  size_t Group = 0;  // equal for files that are ticked together; 0: a file of its own
  std::vector<TReviewEdit> Edits;
};

class TReviewModel : public TTickModel {
 public:
  enum TColumn { Name, Added, Removed };
  // Further roles of an index: the file and the edit of a row, or -1.
  enum TRole { FileRole = Qt::UserRole, EditIndexRole };

  explicit TReviewModel(QObject* parent) : TTickModel({"File", "Added", "Removed"}, parent) {}

  // Shows the files of `set`. `rows` has an entry for each of them or is empty. All ticks are `isTicked`.
  void Show(TReviewSetPtr set, const std::vector<TReviewRows>& rows, bool isTicked);
  const TReviewSetPtr& Set() const { return FSet; }

  // Sets the number of changed lines of a file. ForgetCounts makes all of them unknown.
  void SetCounts(int file, int added, int removed);
  void ForgetCounts();
  // Returns False if the file is known to have no changed lines.
  bool HasChanges(int file) const;

  // The tick of a file or of one of its edits (-1: of the file itself).
  bool IsTicked(int file, int edit = -1) const;
  void SetTicked(int file, bool isTicked);
  // Returns how many files have a tick, in full or in part.
  int TickedFiles() const;
  QModelIndex IndexOf(int file) const;

  QModelIndex index(int row, int column, const QModelIndex& parent) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 protected:
  void SetTick(const QModelIndex& index, bool isTicked) override;

 private:
  struct TNode {
    QString Title;
    int File = -1;
    int Edit = -1;
    int Parent = 0;
    int Row = 0;     // among the children of the parent
    int Added = -1;  // -1: unknown
    int Removed = 0;
    Qt::CheckState Tick = Qt::Unchecked;
    std::vector<int> Children = {};
  };
  int AddNode(int parent, TNode node);
  const TNode& NodeOf(const QModelIndex& index) const;
  QModelIndex IndexOfNode(int node, int column = 0) const;
  void Tick(int node, Qt::CheckState state);
  void TickParents(int node);
  QString CountText(const TNode& node, int column) const;

  TReviewSetPtr FSet;
  std::vector<TNode> FNodes;    // the first is the root
  std::vector<int> FFileNodes;  // the node of each file
};

}  // namespace desktop
