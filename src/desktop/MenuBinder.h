// Builds a menu bar from the menu items of a form.
#pragma once

#include <functional>
#include <span>
#include <string_view>
#include <utility>

#include "desktop/Binder.h"
#include "forms/Form.h"

class QAction;
class QMenu;
class QMenuBar;

namespace tallowin::desktop {

/// How an item looks, besides what the control says.
struct MenuLook {
  std::string_view item;  ///< its name
  const char* icon = "";  ///< of the icon theme; none where the theme has none
  bool isSwitch = false;  ///< has a box for its tick also while it is not ticked
};

class MenuBinder {
 public:
  using Chosen = std::function<void(forms::MenuItem&)>;

  /// A chosen item is clicked, unless `chosen` is there to be called instead.
  MenuBinder(Binder& binder, forms::Form& form, std::span<const MenuLook> looks, Chosen chosen = {})
      : binder_(binder), form_(form), looks_(looks), chosen_(std::move(chosen)) {}

  void Fill(QMenuBar& bar);
  /// With the items of one menu.
  void FillPopup(QMenu& menu, forms::MenuItem& top);

 private:
  [[nodiscard]] MenuLook LookOf(const forms::MenuItem& item) const;
  void AddMenu(forms::MenuItem& top, QMenuBar& bar);
  void AddItem(forms::MenuItem& item, QMenu& menu);

  Binder& binder_;
  forms::Form& form_;
  std::span<const MenuLook> looks_;
  Chosen chosen_;
};

}  // namespace tallowin::desktop
