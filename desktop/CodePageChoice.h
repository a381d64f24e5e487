// The choice of the code page, for a file and for the project: two menus, and a bar that comes up when
// sources seem to be in another code page than the one they are read in.
//
// The project's code page is the source code page of the process (win/paths/CodePage.h) while the project is
// open; it is kept in the user's settings.
#pragma once

#include <QFrame>
#include <QFutureWatcher>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

class QBoxLayout;
class QLabel;
class QPushButton;

namespace host {
class TProject;
}

namespace desktop {

class TEditorPages;
class THostMenu;

class TCodePageChoice : public QFrame {
 public:
  // Adds the menus to the item "EditMenu". Nothing is owned; all must outlive this object. The frame is the
  // bar.
  TCodePageChoice(THostMenu& menu, TEditorPages& pages, QWidget* parent);

  // Sets the project's code page, or the one of the program's start for null. Guesses it from the sources if
  // the user has not chosen one yet. A task makes the guess.
  void SetProject(const host::TProject* project);
  // Returns whether no such task runs.
  bool IsIdle() const { return !FIsGuessing; }
  // Shows the choice for the page in front, and the code page that its file or the project seems to use.
  void ShowState();

  // Called with each change, after the editors have read their files again.
  std::function<void()> OnChange;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Arrange();
  void AddMenu(const char* name, const char* caption, const std::function<void(uint32_t codePage)>& choose);
  void Check(const char* menu, uint32_t codePage, bool isEnabled);
  void ChooseForFile(uint32_t codePage);
  void ChooseForProject(uint32_t codePage);
  void ReadInto(uint32_t sourceCodePage);
  uint32_t Suggested() const;
  void Keep();

  THostMenu& FMenu;
  TEditorPages& FPages;
  const uint32_t FAtStart;         // the source code page of the program's start
  std::string FProject;            // its file; empty if none is open
  uint32_t FProjectSuggested = 0;  // the code page that its sources seem to be in; 0 if there is no question
  QFutureWatcher<uint32_t> FGuessing;
  bool FIsGuessing = false;  // the result of the task is wanted
  QLabel* FText;
  QBoxLayout* FLayout;
  QWidget* FButtons;
  QPushButton* FUseForProject;
  QPushButton* FUseForFile;
  QPushButton* FKeep;
};

}  // namespace desktop
