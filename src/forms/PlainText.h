// Foreign bytes as text that can be shown and cannot steer what shows it.
#pragma once

#include <string>
#include <string_view>

namespace tallowin::forms {

/// Valid UTF-8 that any terminal or text widget can take. Line ends (CR LF, LF, a lone CR) become
/// LF and tabs stay; other control characters, bytes that are no UTF-8, and the characters that
/// reorder or hide text (U+0080 to U+009F, U+200B, U+200E, U+200F, U+2028 to U+202E, U+2060,
/// U+2066 to U+2069, U+FEFF, U+FFF9 to U+FFFB, U+E0000 to U+E007F) appear as their bytes, "\x1b"
/// for example.
[[nodiscard]] std::string PlainText(std::string_view bytes);

}  // namespace tallowin::forms
