// The open group as a model for a tree view: its projects, their units, and the forms of the units.
//
//   TProjectModel model(host);
//   view.setModel(&model);
//   model.Fill();                   // after a project was opened or closed
//   model.SetFilter("data");        // only units whose name or form has this text
//   model.FileOf(view.currentIndex());
//
// The forms of a unit are looked for when its row is shown, and their classes are read when they are shown,
// so that filling costs no access to the disk. Units that the project names but that do not exist are shown
// in grey.
#pragma once

#include <QAbstractItemModel>
#include <QFont>
#include <QIcon>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace host {
class THost;
class TProject;
}  // namespace host

namespace desktop {

class TProjectModel : public QAbstractItemModel {
 public:
  enum class TKind { Root, Group, Project, Unit, MissingUnit, Form };
  enum TColumn { coName, coForm, kColumns };

  // The host is not owned and must outlive the model.
  explicit TProjectModel(host::THost& host);
  ~TProjectModel() override;

  // Builds the rows from the host's open group.
  void Fill();
  // Shows the units whose name or form name has `text` in it, in any case of letters; all for an empty text.
  void SetFilter(const QString& text);
  // Shows the active project in bold.
  void MarkActive();
  // The number of units, missing ones included: those that are shown, and all.
  int ShownUnits() const { return FShownUnits; }
  int AllUnits() const { return FAllUnits; }

  TKind KindOf(const QModelIndex& index) const;
  // Returns the full Windows path of a row, which is empty for a group without a file.
  const std::string& FileOf(const QModelIndex& index) const;
  // Returns the project of a row: of a unit and a form, the one that lists it. Null for a group.
  host::TProject* ProjectOf(const QModelIndex& index) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex&) const override { return kColumns; }
  QVariant data(const QModelIndex& index, int role) const override;
  bool hasChildren(const QModelIndex& parent) const override;
  bool canFetchMore(const QModelIndex& parent) const override;
  void fetchMore(const QModelIndex& parent) override;

 private:
  struct TNode;
  TNode& NodeOf(const QModelIndex& index) const;
  void AddProject(TNode& parent, host::TProject& project);
  bool Matches(const std::string& text) const;
  const std::vector<std::string>& FormsOf(TNode& unit) const;
  const std::string& SummaryOf(TNode& node) const;
  const QIcon& IconOf(TKind kind) const;

  host::THost& FHost;
  std::unique_ptr<TNode> FRoot;
  std::string FFilter;  // upper case
  int FShownUnits = 0;
  int FAllUnits = 0;
  QIcon FGroupIcon, FProjectIcon, FUnitIcon, FFormIcon;
  QFont FBold;
};

}  // namespace desktop
