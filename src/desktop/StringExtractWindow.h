// All about one file: the form's window.
#pragma once

#include "analysis/StringExtractFrm.h"
#include "desktop/FormWindow.h"

namespace tallowin::desktop {

/// A file that is dropped on the window has its name filled in.
class StringExtractWindow : public FormWindow {
 public:
  StringExtractWindow(analysis::StringExtractFrm& form, platform::EventLoop& loop);

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  QWidget* MakeSettings(QWidget* parent);
  QWidget* MakePages(QWidget* parent);

  analysis::StringExtractFrm& form_;
};

}  // namespace tallowin::desktop
