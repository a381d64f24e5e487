// The tree of the open group: its projects, their units and forms.
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
  // The host is not owned and must outlive the tree.
  TProjectTree(host::THost& host, QWidget* parent);

  // Rebuilds the tree. Collapsed items stay collapsed.
  void Fill();
  // Shows the active project in bold.
  void MarkActive();

  // Called when the user opens a file of the tree. For a form, `fileName` is the name of the form file.
  std::function<void(const std::string& fileName)> OnOpen;
  std::function<void(host::TProject& project)> OnActivate;

 private:
  void AddProject(QTreeWidgetItem& parent, int index);
  void Choose(const QTreeWidgetItem& item);
  void ShowItemMenu(const QPoint& position);

  host::THost& FHost;
};

}  // namespace desktop
