// The tree of what the host has open: the group, its projects, their units with their forms.
#pragma once

#include <QTreeWidget>
#include <functional>
#include <string>

namespace host {
class THost;
class TProject;
}  // namespace host

namespace desktop {

class TProjectTree : public QTreeWidget {
 public:
  // The host is not owned, and lives longer.
  TProjectTree(host::THost& host, QWidget* parent);

  // Makes the tree anew; what was folded stays so.
  void Fill();
  // Shows the active project in bold.
  void MarkActive();

  // Called when the user wants to see a file of the tree; a form's by its own name.
  std::function<void(const std::string& fileName)> OnOpen;
  std::function<void(host::TProject& project)> OnActivate;

 private:
  void AddProject(QTreeWidgetItem& parent, int index);
  void Choose(const QTreeWidgetItem& item);
  void ShowItemMenu(const QPoint& position);

  host::THost& FHost;
};

}  // namespace desktop
