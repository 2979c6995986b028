// How controls look in the answers of the terminal.
#pragma once

#include <string>

#include "forms/Controls.h"
#include "forms/Form.h"

namespace tallowin::console {

/// One line without a line end: name, kind, value, "disabled" or "hidden" where that holds, and
/// caption, with a tab between them. A long value is cut, and its whole length told.
[[nodiscard]] std::string DescribeControl(const forms::Control& control);

/// The form and its controls, a line each. The rows of a list stand below it: a tab, the number, a
/// tab and the text. So do the buttons of a tool bar, with their keys and captions.
[[nodiscard]] std::string DescribeForm(const forms::Form& form);

}  // namespace tallowin::console
