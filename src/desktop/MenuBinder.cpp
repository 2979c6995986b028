#include "desktop/MenuBinder.h"

#include <QAction>
#include <QIcon>
#include <QMenu>
#include <QMenuBar>
#include <algorithm>

#include "desktop/Text.h"

namespace tallowin::desktop {

namespace {

void ShowState(const forms::MenuItem& item, bool isSwitch, QAction& action) {
  // A separator with a text would be a heading.
  if (!item.IsSeparator()) action.setText(ToQString(item.Caption()));
  action.setToolTip(ToToolTip(item.ToolTip()));
  action.setEnabled(item.Enabled());
  action.setVisible(item.Visible());
  action.setCheckable(isSwitch || item.Checked());
  action.setChecked(item.Checked());
}

/// A search of the icon theme takes longer than all else here, and most menus are never opened.
void FindIconsWhenOpened(QMenu& menu) {
  QObject::connect(
      &menu, &QMenu::aboutToShow, &menu,
      [&menu] {
        for (QAction* action : menu.actions()) {
          const QString name = action->data().toString();
          if (!name.isEmpty()) action->setIcon(QIcon::fromTheme(name));
        }
      },
      Qt::SingleShotConnection);
}

}  // namespace

MenuLook MenuBinder::LookOf(const forms::MenuItem& item) const {
  const auto found = std::find_if(looks_.begin(), looks_.end(),
                                  [&](const MenuLook& look) { return look.item == item.Name(); });
  return found == looks_.end() ? MenuLook{} : *found;
}

void MenuBinder::Fill(QMenuBar& bar) {
  for (forms::MenuItem* top : form_.ItemsOf(nullptr)) AddMenu(*top, bar);
}

void MenuBinder::AddMenu(forms::MenuItem& top, QMenuBar& bar) {
  auto* menu = new QMenu(&bar);
  bar.addMenu(menu);
  menu->setObjectName(QString::fromStdString(top.Name()));
  FillPopup(*menu, top);

  const auto items = form_.ItemsOf(&top);
  const auto show = [&top, items, menu](const forms::Change& /*change*/) {
    const bool any = std::any_of(items.begin(), items.end(),
                                 [](const forms::MenuItem* item) { return item->Visible(); });
    menu->setTitle(ToQString(top.Caption()));
    menu->menuAction()->setEnabled(top.Enabled());
    menu->menuAction()->setVisible(top.Visible() && any);
  };
  binder_.Observe(top, show);
  for (forms::MenuItem* item : items) binder_.Observe(*item, show);
}

void MenuBinder::FillPopup(QMenu& menu, forms::MenuItem& top) {
  for (forms::MenuItem* item : form_.ItemsOf(&top)) AddItem(*item, menu);
  FindIconsWhenOpened(menu);
}

void MenuBinder::AddItem(forms::MenuItem& item, QMenu& menu) {
  auto* action = new QAction(&menu);
  action->setObjectName(QString::fromStdString(item.Name()));
  menu.addAction(action);
  const MenuLook look = LookOf(item);
  action->setSeparator(item.IsSeparator());
  action->setShortcut(QKeySequence(QString::fromStdString(item.Shortcut())));
  action->setData(QString(look.icon));
  const auto show = [&item, look, action] { ShowState(item, look.isSwitch, *action); };
  binder_.Observe(item, [show](const forms::Change& /*change*/) { show(); });
  QObject::connect(action, &QAction::triggered, action, [this, &item, show] {
    // Qt has flipped the tick already, but that is for the item's handler to decide.
    show();
    if (chosen_) {
      chosen_(item);
    } else {
      binder_.Deliver([&item] { item.Click(); });
    }
  });
}

}  // namespace tallowin::desktop
