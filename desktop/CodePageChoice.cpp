#include "desktop/CodePageChoice.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QtConcurrentRun>
#include <algorithm>
#include <memory>
#include <utility>

#include "MigWizard/run/RExpertRes.h"
#include "desktop/CodePageGuess.h"
#include "desktop/EditorPages.h"
#include "desktop/HostMenu.h"
#include "desktop/HostTexts.h"
#include "desktop/QtText.h"
#include "desktop/SourceEditor.h"
#include "host/Project.h"
#include "rtl/text/Files.h"
#include "rtl/text/Registry.h"
#include "rtl/text/SysUtils.h"
#include "win/FileSystem.h"
#include "win/paths/CodePage.h"

namespace desktop {

namespace {

constexpr char kFileMenu[] = "EditFileCodePage";
constexpr char kProjectMenu[] = "EditProjectCodePage";
constexpr size_t kMostUnits = 40;             // of a project, for the guess
constexpr size_t kMostSampleBytes = 1 << 20;  // the same

std::string KeyOf(const std::string& project) {
  return "CodePage " + rtl::UpperCase(project);
}

std::string ItemName(const char* menu, uint32_t codePage) {
  return menu + std::to_string(codePage);
}

// Returns the code page that the units seem to be in, or 0. Runs on a worker thread.
uint32_t GuessOf(const std::vector<std::string>& units, uint32_t codePage) {
  // The file system of the main thread is not for others.
  const std::unique_ptr<win::TFileSystem> files = win::AnotherHostFileSystem();
  const win::TFileSystemOverride inForce(*files);
  std::string sample;
  for (size_t i = 0; i < units.size() && sample.size() < kMostSampleBytes; ++i) {
    try {
      const std::string bytes = rtl::ReadFile(units[i]);
      if (!bytes.starts_with("\xEF\xBB\xBF") && !bytes.starts_with("\xFF\xFE")) sample += bytes;
    } catch (const rtl::EStreamError&) {
      continue;  // opening the unit gives the reason
    }
  }
  return GuessCodePage(sample, codePage);
}

}  // namespace

TCodePageChoice::TCodePageChoice(THostMenu& menu, TEditorPages& pages, QWidget* parent)
    : QFrame(parent), FMenu(menu), FPages(pages), FAtStart(win::GetACP()), FText(new QLabel) {
  setObjectName("CodePageBar");
  setFrameShape(QFrame::StyledPanel);
  FText->setObjectName("CodePageText");
  FText->setWordWrap(true);
  FLayout = new QBoxLayout(QBoxLayout::LeftToRight, this);
  FLayout->addWidget(FText, 1);
  FButtons = new QWidget;
  auto* const buttons = new QHBoxLayout(FButtons);
  buttons->setContentsMargins({});
  buttons->addStretch();
  FLayout->addWidget(FButtons);
  const auto addButton = [&](const char* name, const std::function<void()>& onClick) {
    auto* const button = new QPushButton;
    button->setObjectName(name);
    buttons->addWidget(button);
    connect(button, &QPushButton::clicked, this, onClick);
    return button;
  };
  FUseForProject = addButton("CodePageForProject", [this] { ChooseForProject(Suggested()); });
  FUseForFile = addButton("CodePageForFile", [this] { ChooseForFile(Suggested()); });
  FKeep = addButton("CodePageKeep", [this] { Keep(); });
  connect(&FGuessing, &QFutureWatcherBase::finished, this, [this] {
    if (!std::exchange(FIsGuessing, false)) return;
    FProjectSuggested = FGuessing.result();
    ShowState();
  });
  FMenu.AddLine("EditMenu");
  AddMenu(kFileMenu, "Code Page of This F&ile", [this](uint32_t codePage) { ChooseForFile(codePage); });
  AddMenu(kProjectMenu, "Code Page of the Pro&ject",
          [this](uint32_t codePage) { ChooseForProject(codePage); });
  hide();
}

// Puts the buttons below the text if both do not fit on one line.
void TCodePageChoice::Arrange() {
  const int text = FText->fontMetrics().horizontalAdvance(FText->text());
  const bool isNarrow = text + FButtons->sizeHint().width() + FLayout->spacing() > contentsRect().width();
  FLayout->setDirection(isNarrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
}

void TCodePageChoice::resizeEvent(QResizeEvent* event) {
  QFrame::resizeEvent(event);
  Arrange();
}

void TCodePageChoice::AddMenu(const char* name, const char* caption,
                              const std::function<void(uint32_t codePage)>& choose) {
  FMenu.Add({"EditMenu", name, caption});
  for (const uint32_t codePage : win::SupportedCodePages()) {
    const std::string item = ItemName(name, codePage);
    FMenu.Add(
        {name, item.c_str(), CodePageName(codePage).c_str(), {}, [choose, codePage] { choose(codePage); }});
    FMenu.ActionOf(item.c_str()).setCheckable(true);
  }
}

void TCodePageChoice::Check(const char* menu, uint32_t codePage, bool isEnabled) {
  FMenu.Enable(menu, isEnabled);
  for (const uint32_t one : win::SupportedCodePages())
    FMenu.ActionOf(ItemName(menu, one).c_str()).setChecked(one == codePage);
}

void TCodePageChoice::SetProject(const host::TProject* project) {
  FProject = project != nullptr ? project->FileName() : std::string();
  FProjectSuggested = 0;
  const rtl::TRegIniFile reg(mig::SRegistryRoot, rtl::KEY_READ_WRITE);
  const int chosen = FProject.empty() ? 0 : reg.ReadInteger(kHostSection, KeyOf(FProject), 0);
  ReadInto(chosen > 0 ? static_cast<uint32_t>(chosen) : FAtStart);
  std::vector<std::string> units;
  for (size_t i = 0; project != nullptr && chosen == 0 && i < std::min(kMostUnits, project->Units().size());
       ++i)
    units.push_back(project->Units()[i].Name);
  FIsGuessing = true;
  FGuessing.setFuture(QtConcurrent::run(GuessOf, std::move(units), win::GetACP()));
  ShowState();
}

void TCodePageChoice::ReadInto(uint32_t sourceCodePage) {
  if (sourceCodePage == win::GetACP() || !win::SetACP(sourceCodePage)) return;
  for (int i = 0; i < FPages.count(); ++i) {
    TSourceEditor* const page = FPages.EditorAt(i);
    if (page != nullptr && page->Editor().Buffer().CodePage() == 0) page->SetCodePage(0);
  }
}

void TCodePageChoice::ChooseForFile(uint32_t codePage) {
  TSourceEditor* const page = FPages.CurrentEditor();
  if (page == nullptr) return;
  page->SetCodePage(codePage);
  ShowState();
  if (OnChange) OnChange();
}

void TCodePageChoice::ChooseForProject(uint32_t codePage) {
  FIsGuessing = false;
  FProjectSuggested = 0;
  ReadInto(codePage);
  rtl::TRegIniFile reg(mig::SRegistryRoot, rtl::KEY_READ_WRITE);
  if (!FProject.empty()) reg.WriteInteger(kHostSection, KeyOf(FProject), static_cast<int>(codePage));
  ShowState();
  if (OnChange) OnChange();
}

void TCodePageChoice::Keep() {
  TSourceEditor* const page = FPages.CurrentEditor();
  if (page != nullptr && page->SuggestedCodePage() != 0) {
    page->DismissSuggestion();
    ShowState();
  } else {
    ChooseForProject(win::GetACP());
  }
}

uint32_t TCodePageChoice::Suggested() const {
  const TSourceEditor* const page = FPages.CurrentEditor();
  const uint32_t ofFile = page != nullptr ? page->SuggestedCodePage() : 0;
  return ofFile != 0 ? ofFile : FProjectSuggested;
}

void TCodePageChoice::ShowState() {
  const TSourceEditor* const page = FPages.CurrentEditor();
  const uint32_t read = page != nullptr ? page->CodePage() : 0;
  Check(kFileMenu, read, read != 0);
  Check(kProjectMenu, win::GetACP(), !FProject.empty());

  const uint32_t suggested = Suggested();
  setVisible(suggested != 0);
  if (suggested == 0) return;
  const bool isFile = page != nullptr && page->SuggestedCodePage() != 0;
  const QString what = isFile ? ToQt(rtl::ExtractFileName(page->Editor().Buffer().FileName())) + " seems"
                              : QString("The sources of this project seem");
  const uint32_t now = isFile ? read : win::GetACP();
  FText->setText(
      QString("%1 to be in code page %2, and %3 read in %4.")
          .arg(what, ToQt(CodePageName(suggested)), isFile ? "is" : "are", ToQt(CodePageName(now))));
  FUseForProject->setText(QString("&Use %1 for the Project").arg(suggested));
  FUseForProject->setVisible(!FProject.empty());
  FUseForFile->setText(QString("Only for This &File"));
  FUseForFile->setVisible(isFile);
  FKeep->setText(QString("&Keep %1").arg(now));
  Arrange();
}

}  // namespace desktop
