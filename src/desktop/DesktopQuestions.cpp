#include "desktop/DesktopQuestions.h"

#include <QApplication>
#include <QCursor>
#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTextDocument>
#include <QTextOption>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/AnswerGuard.h"
#include "desktop/BoxText.h"
#include "desktop/MainWindow.h"
#include "desktop/MenuBinder.h"
#include "desktop/Text.h"

namespace tallowin::desktop {

namespace {

using forms::Answer;
using forms::MessageBoxStyle;

constexpr int kPromptColumns = 60;
constexpr int kFrameColumns = 30;  // what stands beside a title, and its bold letters

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

bool DesktopQuestions::Wait(QDialog& dialog) {
  bool finished = false;
  QObject::connect(&dialog, &QDialog::finished, &dialog, [&finished] { finished = true; });
  dialog.setWindowModality(Qt::ApplicationModal);
  dialog.show();
  loop_.RunUntil([&finished] { return finished; });
  sinceWanted_.restart();
  return dialog.result() == QDialog::Accepted;
}

std::string DesktopQuestions::InputBox(const std::string& prompt, const std::string& title) {
  QDialog dialog(QApplication::activeWindow());
  dialog.setObjectName("InputBox");
  dialog.setWindowTitle(ToWindowTitle(title));
  auto* label = new QLabel(ToQString(prompt), &dialog);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  auto* edit = new QLineEdit(&dialog);
  label->setBuddy(edit);
  edit->setAccessibleName(ToQString(prompt));
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  auto* layout = new QVBoxLayout(&dialog);
  for (QWidget* part : {static_cast<QWidget*>(label), static_cast<QWidget*>(edit),
                        static_cast<QWidget*>(buttons)}) {
    layout->addWidget(part);
  }
  const QFontMetrics metrics = dialog.fontMetrics();
  const int width = std::max(
      kPromptColumns * metrics.averageCharWidth(),
      metrics.horizontalAdvance(dialog.windowTitle()) + kFrameColumns * metrics.averageCharWidth());
  dialog.setMinimumWidth(width);
  dialog.resize(width, layout->totalHeightForWidth(width));
  return Wait(dialog) ? FromQString(edit->text()) : std::string();
}

std::string DesktopQuestions::OpenFileName(const std::string& title) {
  QFileDialog dialog(QApplication::activeWindow(), ToWindowTitle(title));
  dialog.setObjectName("OpenFile");
  dialog.setFileMode(QFileDialog::ExistingFile);
  dialog.setAcceptMode(QFileDialog::AcceptOpen);
  if (!folderOfFile_.isEmpty()) dialog.setDirectory(folderOfFile_);
  if (!Wait(dialog) || dialog.selectedFiles().isEmpty()) return {};
  folderOfFile_ = dialog.directory().absolutePath();
  return QFile::encodeName(dialog.selectedFiles().constFirst()).toStdString();
}

void DesktopQuestions::PopupMenu(forms::Form& form, forms::MenuItem& menu) {
  Binder binder(loop_);
  QMenu popup;
  popup.setObjectName(QString::fromStdString(menu.Name()));
  MenuBinder items(binder, form, MainMenuLooks());
  items.FillPopup(popup, menu);
  // The user has just been here: what an item asks is no intrusion.
  sinceWanted_.restart();
  popup.popup(QCursor::pos());
  loop_.RunUntil([&popup] { return !popup.isVisible(); });
}

}  // namespace tallowin::desktop
