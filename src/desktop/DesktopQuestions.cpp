#include "desktop/DesktopQuestions.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTextDocument>
#include <QTextOption>
#include <algorithm>

#include "desktop/Text.h"

namespace tallowin::desktop {

namespace {

using forms::Answer;
using forms::MessageBoxStyle;

QMessageBox::Icon IconOf(MessageBoxStyle style) {
  switch (style) {
    case MessageBoxStyle::Stop:
      return QMessageBox::Critical;
    case MessageBoxStyle::YesNoQuestion:
      return QMessageBox::Question;
    case MessageBoxStyle::Exclamation:
      return QMessageBox::Warning;
    case MessageBoxStyle::Information:
    case MessageBoxStyle::YesNoInformation:
      return QMessageBox::Information;
    case MessageBoxStyle::Plain:
      break;
  }
  return QMessageBox::NoIcon;
}

bool AnyWindowShows() {
  const auto windows = QApplication::topLevelWidgets();
  return std::any_of(windows.begin(), windows.end(),
                     [](const QWidget* w) { return w->isVisible(); });
}

/// Texts are laid out for the tabs that message boxes have, 8 characters of average width apart;
/// a label of the toolkit has them far wider apart.
void SetTabs(QMessageBox& box) {
  constexpr int kColumns = 8;
  for (auto* document : box.findChildren<QTextDocument*>()) {
    QTextOption option = document->defaultTextOption();
    option.setTabStopDistance(kColumns * box.fontMetrics().averageCharWidth());
    document->setDefaultTextOption(option);
  }
}

void Fill(QMessageBox& box, const std::string& text, MessageBoxStyle style) {
  const bool yesNo = forms::AsksYesNo(style);
  box.setObjectName("MsgBox");
  box.setIcon(IconOf(style));
  box.setTextFormat(Qt::PlainText);
  box.setText(ToQString(text));
  box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  SetTabs(box);
  box.setStandardButtons(yesNo ? QMessageBox::Yes | QMessageBox::No
                               : QMessageBox::StandardButtons(QMessageBox::Ok));
  const auto harmless = yesNo ? QMessageBox::No : QMessageBox::Ok;
  box.setDefaultButton(harmless);
  box.setEscapeButton(harmless);
}

/// Without the keyboard if the user is at work elsewhere. Before there is any window, the box is
/// what the user has started the program for.
void Show(QMessageBox& box) {
  const bool intrudes = AnyWindowShows() && QApplication::activeWindow() == nullptr;
  box.setAttribute(Qt::WA_ShowWithoutActivating, intrudes);
  // Not open(), which would block one window only.
  box.setWindowModality(Qt::ApplicationModal);
  box.show();
  box.defaultButton()->setFocus();
  if (!intrudes) return;
  box.raise();
  QApplication::alert(&box);
}

}  // namespace

Answer DesktopQuestions::MsgBox(const std::string& text, MessageBoxStyle style,
                                const std::string& title) {
  // Not a child of a window that is minimised, which would hide the box with it.
  QMessageBox box(QApplication::activeWindow());
  Fill(box, text, style);
  box.setWindowTitle(ToWindowTitle(title));
  bool finished = false;
  QObject::connect(&box, &QMessageBox::finished, &box, [&finished] { finished = true; });
  Show(box);
  loop_.RunUntil([&finished] { return finished; });
  if (!forms::AsksYesNo(style)) return Answer::Ok;
  return box.standardButton(box.clickedButton()) == QMessageBox::Yes ? Answer::Yes : Answer::No;
}

}  // namespace tallowin::desktop
