// The task bar: the program's icon in the notification area, and whether its windows stand in the
// task list.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace tallowin::forms {

class Form;
class MenuItem;
class PictureBox;

/// What the mouse did to an icon, in the numbers of the mouse messages.
namespace mouse {
inline constexpr std::uint32_t kMove = 512;
inline constexpr std::uint32_t kLeftButtonUp = 514;
inline constexpr std::uint32_t kLeftDoubleClick = 515;
inline constexpr std::uint32_t kRightButtonUp = 517;
inline constexpr std::uint32_t kMiddleButtonUp = 520;
}  // namespace mouse

inline constexpr std::int32_t kTwipsPerPixelX = 15;

/// An icon, as the shell's record has it.
struct NotifyIconData {
  static constexpr std::uint32_t kMessage = 1;
  static constexpr std::uint32_t kIcon = 2;
  static constexpr std::uint32_t kTip = 4;

  std::int32_t cbSize = 0;
  PictureBox* hWnd = nullptr;  ///< gets the messages of the icon
  std::int32_t uID = 0;
  std::uint32_t uFlags = 0;  ///< which of the following fields hold
  std::uint32_t uCallbackMessage = 0;
  std::string hIcon = {};           ///< the key of a picture that front ends know
  std::array<char, 64> szTip = {};  ///< ends with a NUL; foreign to any markup
};

/// There may be no notification area, or none yet: an icon is kept all the same, and a front end
/// shows it where and when it can.
class TaskBar {
 public:
  enum class NotifyMessage : std::int32_t { Add = 0, Delete = 2 };

  /// False for a second icon, and for the deletion of one that is not there.
  bool Shell_NotifyIcon(NotifyMessage message, const NotifyIconData& data);
  [[nodiscard]] const std::optional<NotifyIconData>& Icon() const { return icon_; }

  /// Front ends tell what the mouse did to the icon. Its picture box gets the number as the X
  /// coordinate of a mouse move, in twips. Nothing without an icon that wants messages.
  void Mouse(std::uint32_t message);

  /// Told beforehand what a right click pops up, a desktop can show it by itself: many show the
  /// menus of icons in the panel's own process, and report no mouse.
  /// `chosen` is called with each item that the user chooses there.
  void SetIconMenu(Form& form, MenuItem& menu, std::function<void(MenuItem&)> chosen);
  void ChooseFromIconMenu(MenuItem& item);
  [[nodiscard]] Form* IconMenuForm() const { return iconMenuForm_; }
  [[nodiscard]] MenuItem* IconMenu() const { return iconMenu_; }

  /// False: a hidden window has no entry in the task list either, provided that there is an icon to
  /// bring it back with.
  [[nodiscard]] bool TaskVisible() const { return taskVisible_; }
  void SetTaskVisible(bool visible);

  /// For the one front end: something of the above is different now.
  std::function<void()> OnChange;

 private:
  void Changed() const;

  std::optional<NotifyIconData> icon_;
  Form* iconMenuForm_ = nullptr;
  MenuItem* iconMenu_ = nullptr;
  std::function<void(MenuItem&)> iconMenuChosen_;
  bool taskVisible_ = true;
};

}  // namespace tallowin::forms
