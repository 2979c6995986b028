// What a user can do to a control, within what a user may: not to a disabled or hidden one, not
// beyond a text box's length.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "forms/Control.h"
#include "forms/TaskBar.h"

namespace tallowin::console {

/// Each gives an empty text when it is done, otherwise why it cannot be, and then nothing has
/// changed. Errors of the control's handler travel to the caller.

/// Types a text into a box, or sets a check box to "0" or "1".
[[nodiscard]] std::string SetValue(forms::Control& control, const std::string& value);

/// Presses a button or chooses a menu item; `key` names the button of a tool bar, and is empty for
/// anything else.
[[nodiscard]] std::string Click(forms::Control& control, std::string_view key = {});

/// Clicks on the program's icon: "double" with the left button, or "right". No form keeps a user
/// from it.
[[nodiscard]] std::string ClickOnTray(forms::TaskBar& taskBar, std::string_view action);

/// Picks the entry of a list that is counted from 0.
[[nodiscard]] std::string Select(forms::Control& control, std::size_t index);

}  // namespace tallowin::console
