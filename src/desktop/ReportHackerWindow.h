// The window for complaints to a caller's provider.
#pragma once

#include "desktop/FormWindow.h"
#include "reporting/ReportHacker.h"

class QGridLayout;
class QListView;
class QVBoxLayout;

namespace tallowin::desktop {

/// The four steps on one page: whom it goes to on the left, who sends what on the right.
class ReportHackerWindow : public FormWindow {
 public:
  ReportHackerWindow(reporting::ReportHacker& form, platform::EventLoop& loop);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] QVBoxLayout* MakeRecipients(QWidget* parent);
  [[nodiscard]] QVBoxLayout* MakeMessage(QWidget* parent);
  void AddStep(QVBoxLayout& layout, QWidget* parent, forms::Label& heading, forms::Label& note);
  void AddField(QGridLayout& grid, QWidget* parent, forms::Label& label, forms::TextBox& box);
  void MouseOverList(QPointF place);

  reporting::ReportHacker& report_;
  QListView* addresses_ = nullptr;
};

}  // namespace tallowin::desktop
