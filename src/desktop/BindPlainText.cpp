// A text box of several lines that the user types into.

#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QTextDocument>
#include <algorithm>

#include "desktop/Binder.h"
#include "desktop/Text.h"

namespace tallowin::desktop {

namespace {

using forms::Change;
using forms::Property;

/// Character by character what was typed: toPlainText would take hard blanks for blanks. Shift and
/// Enter make a line end of another kind.
QString TypedText(const QPlainTextEdit& edit) {
  return edit.document()
      ->toRawText()
      .replace(QChar::ParagraphSeparator, '\n')
      .replace(QChar::LineSeparator, '\n');
}

/// As the control has it.
std::string TypedLines(const QPlainTextEdit& edit) {
  return FromQString(TypedText(edit).replace('\n', "\r\n"));
}

/// Leaves the cursor alone where the widget shows the text already, because it was typed there:
/// perhaps with characters that would show as their bytes.
void ShowLines(const std::string& text, QPlainTextEdit& edit) {
  const QString shown = ToQString(text);
  if (TypedText(edit) == shown || TypedLines(edit) == text) return;
  const QSignalBlocker quiet(edit);
  QTextCursor cursor = edit.textCursor();
  const auto position = std::min<qsizetype>(cursor.position(), shown.size());
  edit.setPlainText(shown);
  cursor.setPosition(static_cast<int>(position));
  edit.setTextCursor(cursor);
}

}  // namespace

void Binder::Bind(forms::TextBox& control, QPlainTextEdit& edit) {
  edit.setReadOnly(control.Locked());
  edit.setTabChangesFocus(true);
  BindCommon(control, edit, [&control, &edit](const Change& change) {
    const bool text = change.property == Property::Text ||
                      change.property == Property::AppendedText ||
                      change.property == Property::Everything;
    if (text) ShowLines(control.Text(), edit);
  });
  QObject::connect(&edit, &QPlainTextEdit::textChanged, &edit, [this, &control, &edit] {
    const std::string text = TypedLines(edit);
    Deliver([&] { control.SetText(text); });
  });
}

}  // namespace tallowin::desktop
