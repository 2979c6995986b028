#include "reporting/Mail.h"

#include <string>
#include <utility>

#include "forms/PlainText.h"

namespace tallowin::reporting {

namespace {

/// Plain text with the line ends of the log.
std::string MailableText(std::string_view message) {
  std::string text;
  for (const char c : forms::PlainText(message)) {
    if (c == '\n') text += '\r';
    text += c;
  }
  return text;
}

}  // namespace

void Mail::Send(std::string_view form, platform::SmtpMail mail) {
  mail.szMessage = MailableText(mail.szMessage);
  smtp_.SmtpInit(form);
  const std::int16_t status = smtp_.SmtpSendMail(mail);
  loop_.DoEvents();
  Report(status);
  smtp_.SmtpRelease();
}

void Mail::Report(std::int16_t status) {
  if (status == 0) {
    log_.LogStatus("SMTP Notification Successful", true);
    return;
  }
  log_.LogStatus("SMTP Notification Failed", true);
  log_.LogStatus("SMTP Error: " + std::to_string(status), false);
}

}  // namespace tallowin::reporting
