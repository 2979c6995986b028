// Texts of the system as Qt wants them, never as rich text.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace tallowin::desktop {

/// Foreign bytes as they can be shown in any widget that takes plain text.
[[nodiscard]] QString ToQString(std::string_view bytes);

/// What the user typed, in UTF-8.
[[nodiscard]] std::string FromQString(const QString& text);

/// For setToolTip, which would take a text that looks like markup as markup.
[[nodiscard]] QString ToToolTip(std::string_view bytes);

/// For setWindowTitle, which has a mark of its own.
[[nodiscard]] QString ToWindowTitle(std::string_view bytes);

/// A caption without its access key, for screen readers.
[[nodiscard]] QString ToAccessibleName(std::string_view caption);

}  // namespace tallowin::desktop
