#include "desktop/MenuBinding.h"

#include <QMenu>
#include <QMenuBar>

#include "desktop/QtText.h"

namespace desktop {

TMenuBinding::TMenuBinding(rtl::TMainMenu& menu, QMenuBar& bar,
                           std::function<void(const std::function<void()>&)> run)
    : FMenu(menu), FBar(bar), FRun(std::move(run)) {
  Sync();
}

TMenuBinding::~TMenuBinding() = default;

void TMenuBinding::Sync() {
  SyncItems(FMenu.Items(), FBar);
}

QAction* TMenuBinding::ActionOf(rtl::TMenuItem& item) {
  std::unique_ptr<QAction>& action = FActions[&item];
  if (!action) {
    action = std::make_unique<QAction>();
    QObject::connect(action.get(), &QAction::triggered, action.get(),
                     [this, &item] { FRun([&item] { item.Click(); }); });
  }
  return action.get();
}

void TMenuBinding::SyncItems(rtl::TMenuItem& parent, QWidget& place) {
  QList<QAction*> wanted;
  for (int i = 0; i < parent.Count(); ++i) {
    rtl::TMenuItem& item = parent[i];
    QAction* const action = ActionOf(item);
    action->setObjectName(ToQt(item.Name()));
    const bool isLine = item.Caption() == "-";
    action->setSeparator(isLine);
    action->setText(isLine ? QString()
                           : ToQt(item.Caption()));  // a separator with a text is drawn as a heading
    action->setVisible(!item.Caption().empty());
    if (item.Count() > 0 && action->menu() == nullptr)
      action->setMenu(FMenus.emplace_back(std::make_unique<QMenu>()).get());
    if (item.Count() > 0) SyncItems(item, *action->menu());
    wanted.push_back(action);
  }
  if (place.actions() == wanted) return;
  for (QAction* const action : place.actions()) place.removeAction(action);
  place.addActions(wanted);
}

}  // namespace desktop
