// A text that can be clicked, by mouse and keyboard.
#pragma once

#include <QLabel>

#include "desktop/Binder.h"

namespace tallowin::desktop {

/// No widget of the toolkit's can be a link with a text that is never taken as markup.
class LinkLabel : public QLabel {
 public:
  LinkLabel(forms::Label& control, Binder& binder, QWidget* parent);

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Click();
  void TakeColour();

  forms::Label& control_;
  Binder& binder_;
};

}  // namespace tallowin::desktop
