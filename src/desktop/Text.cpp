#include "desktop/Text.h"

#include <QTextDocument>

#include "forms/PlainText.h"

namespace tallowin::desktop {

QString ToQString(std::string_view bytes) {
  return QString::fromStdString(forms::PlainText(bytes));
}

std::string FromQString(const QString& text) { return text.toStdString(); }

QString ToToolTip(std::string_view bytes) {
  const QString text = ToQString(bytes);
  return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

QString ToWindowTitle(std::string_view bytes) {
  // "[*]" marks a changed document, and twice in a row it stands for itself.
  return ToQString(bytes).replace("[*]", "[*][*]");
}

QString ToAccessibleName(std::string_view caption) {
  QString name = ToQString(caption).remove('&');
  if (name.endsWith(':')) name.chop(1);
  return name;
}

}  // namespace tallowin::desktop
