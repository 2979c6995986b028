// A picture that is chosen by its key.

#include <QIcon>
#include <QLabel>
#include <QPixmap>

#include "desktop/Binder.h"
#include "desktop/Text.h"

namespace tallowin::desktop {

namespace {

QIcon PictureOf(const std::string& key) {
  QIcon icon;
  for (const int size : {32, 48, 64, 96, 128}) {
    icon.addFile(QString(":/pictures/%1-%2.png").arg(ToQString(key)).arg(size), QSize(size, size));
  }
  return icon;
}

}  // namespace

void Binder::Bind(forms::PictureBox& control, QLabel& label, int size) {
  // The place is kept while there is no picture, so that nothing moves when one comes.
  label.setFixedSize(size, size);
  label.setAlignment(Qt::AlignCenter);
  Bind(control, label, [&label, size](const std::string& key) {
    return PictureOf(key).pixmap(QSize(size, size), label.devicePixelRatioF());
  });
}

}  // namespace tallowin::desktop
