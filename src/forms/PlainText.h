// Foreign bytes as text that can be shown and cannot steer what shows it.
#pragma once

#include <string>
#include <string_view>

namespace tallowin::forms {

/// Valid UTF-8 that any terminal or text widget can take. Line ends (CR LF, LF, a lone CR) become
/// LF and tabs stay; other control characters, bytes that are no UTF-8, and all characters that
/// reorder text or show nothing appear as their bytes, "\x1b" for example.
[[nodiscard]] std::string PlainText(std::string_view bytes);

}  // namespace tallowin::forms
