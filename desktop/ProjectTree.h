// The tree of the open group with a filter for its units: projects, units, and forms with their classes.
#pragma once

#include <QWidget>
#include <functional>
#include <string>

#include "desktop/ProjectModel.h"

class QLabel;
class QLineEdit;
class QTreeView;

namespace desktop {

class TProjectTree : public QWidget {
 public:
  // The host is not owned and must outlive the tree.
  TProjectTree(host::THost& host, QWidget* parent);

  // Rebuilds the tree. In a small project all rows are expanded, in a large one only the projects.
  void Fill();
  // Shows the active project in bold.
  void MarkActive() { FModel.MarkActive(); }

  // Called when the user opens a file of the tree. For a form, `fileName` is the name of the form file.
  std::function<void(const std::string& fileName)> OnOpen;
  std::function<void(host::TProject& project)> OnActivate;
  // Called when the user wants to convert one unit, a full Windows path. Unset: the menu does not offer it.
  std::function<void(host::TProject& project, const std::string& unit)> OnConvert;

 private:
  void Expand();
  void Choose(const QModelIndex& index);
  void ShowItemMenu(const QPoint& position);

  TProjectModel FModel;
  QLineEdit* FFilter;
  QLabel* FCount;
  QTreeView* FView;
};

}  // namespace desktop
