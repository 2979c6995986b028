#include "desktop/DesktopQuestions.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTextDocument>
#include <QTextOption>

#include "desktop/AnswerGuard.h"
#include "desktop/BoxText.h"
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

/// Texts are laid out for the tabs that message boxes have, 8 characters of average width apart;
/// a label of the toolkit has them far wider apart.
void SetTabs(QMessageBox& box) {
  constexpr int kTabColumns = 8;
  for (auto* document : box.findChildren<QTextDocument*>()) {
    QTextOption option = document->defaultTextOption();
    option.setTabStopDistance(kTabColumns * box.fontMetrics().averageCharWidth());
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
  box.setStandardButtons(yesNo ? QMessageBox::Yes | QMessageBox::No
                               : QMessageBox::StandardButtons(QMessageBox::Ok));
  const auto harmless = yesNo ? QMessageBox::No : QMessageBox::Ok;
  box.setDefaultButton(harmless);
  box.setEscapeButton(harmless);
  GiveRoom(box);
  SetTabs(box);
}

/// A box that intrudes comes without the keyboard, and in front, so that it is not missed: many
/// window managers put a window that does not ask for the keyboard behind the others.
void Show(QMessageBox& box, bool intrudes) {
  box.setAttribute(Qt::WA_ShowWithoutActivating, intrudes);
  box.setWindowFlag(Qt::WindowStaysOnTopHint, intrudes);
  // Not open(), which would block one window only.
  box.setWindowModality(Qt::ApplicationModal);
  box.show();
  box.defaultButton()->setFocus();
  if (!intrudes) return;
  box.raise();
  QApplication::alert(&box);
}

}  // namespace

bool DesktopQuestions::Intrudes() const {
  constexpr int kWantedMilliseconds = 2000;
  return QApplication::activeWindow() == nullptr && sinceWanted_.hasExpired(kWantedMilliseconds);
}

Answer DesktopQuestions::MsgBox(const std::string& text, MessageBoxStyle style,
                                const std::string& title) {
  // Not a child of a window that is minimised, which would hide the box with it.
  QMessageBox box(QApplication::activeWindow());
  box.setWindowTitle(ToWindowTitle(title));
  Fill(box, text, style);
  bool finished = false;
  QObject::connect(&box, &QMessageBox::finished, &box, [&finished] { finished = true; });
  Show(box, Intrudes());
  const AnswerGuard guard(box);
  loop_.RunUntil([&finished] { return finished; });
  sinceWanted_.restart();
  if (!forms::AsksYesNo(style)) return Answer::Ok;
  return box.standardButton(box.clickedButton()) == QMessageBox::Yes ? Answer::Yes : Answer::No;
}

}  // namespace tallowin::desktop
