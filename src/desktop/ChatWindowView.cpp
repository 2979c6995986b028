#include "desktop/ChatWindowView.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "desktop/TextView.h"

namespace tallowin::desktop {

namespace {

constexpr QSize kChatSize{520, 400};

/// In the size that the user has chosen for all windows.
QFont Verdana() {
  QFont font;
  font.setFamily("Verdana");
  font.setStyleHint(QFont::SansSerif);
  return font;
}

}  // namespace

ChatWindowView::ChatWindowView(portsentry::ChatWindow& form, platform::EventLoop& loop)
    : FormWindow(form, loop, WhenHidden::Hide, WhenShown::LeaveKeyboard) {
  auto* content = new QWidget(this);
  content->setFont(Verdana());
  auto* endChat = new QPushButton(content);
  auto* layout = new QVBoxLayout(content);
  layout->addWidget(MakeChat(form, content), 1);
  layout->addWidget(endChat, 0, Qt::AlignRight);
  Bindings().Bind(form.EndButton, *endChat);
  setCentralWidget(content);
  ResizeWithinScreen(kChatSize);
  Follow();
}

QWidget* ChatWindowView::MakeChat(portsentry::ChatWindow& form, QWidget* parent) {
  auto* chat = new QGroupBox(parent);
  auto* transcript = new TextView(form.ChatBox.Text(), chat);
  auto* line = new QLineEdit(chat);
  auto* send = new QPushButton(chat);
  send->setDefault(true);
  transcript->setFont(Verdana());
  transcript->setAccessibleName(tr("Transcript"));
  line->setAccessibleName(tr("Your line"));
  auto* typing = new QHBoxLayout;
  typing->addWidget(line, 1);
  typing->addWidget(send);
  auto* layout = new QVBoxLayout(chat);
  layout->addWidget(transcript, 1);
  layout->addLayout(typing);
  Bindings().Bind(form.Frame1, *chat);
  Bindings().Bind(form.ChatBox, *transcript);
  Bindings().Bind(form.SendBox, *line);
  Bindings().Bind(form.SendButton, *send);
  connect(line, &QLineEdit::returnPressed, send, &QPushButton::click);
  line->setFocus();
  return chat;
}

}  // namespace tallowin::desktop
