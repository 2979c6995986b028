#include "desktop/HostWarnings.h"

#include <QMessageBox>
#include <iostream>

#include "desktop/Text.h"
#include "forms/PlainText.h"

namespace tallowin::desktop {

namespace {

void ShowBox(const std::string& message) {
  QString text = ToQString(message);
  text.front() = text.front().toUpper();
  auto* box = new QMessageBox(QMessageBox::Warning, "Tallowin", text, QMessageBox::Ok);
  box->setTextFormat(Qt::PlainText);
  box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setAttribute(Qt::WA_ShowWithoutActivating);
  box->setModal(false);
  box->show();
}

}  // namespace

void HostWarnings::Add(const std::string& message) {
  std::cerr << "tallowin: " << forms::PlainText(message) << "\n";
  if (windows_) {
    ShowBox(message);
  } else {
    waiting_.push_back(message);
  }
}

void HostWarnings::Show() {
  windows_ = true;
  for (const std::string& message : waiting_) ShowBox(message);
  waiting_.clear();
}

}  // namespace tallowin::desktop
