#include "reporting/EventNotification.h"

#include "core/Endpoints.h"
#include "core/LineRoutines.h"
#include "forms/PlainText.h"

namespace tallowin::reporting {

namespace {

constexpr std::size_t kLinesInMail = 20;
constexpr const char* kLineEnd = "\r\n";

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

std::string EventNotification::ComposeMessage() const {
  std::string message =
      "Tallowin has automatically sent you this message because an event has occured\r\n"
      "Below are the last 20 lines of the log\r\n";
  // The log ends in a line end, behind which CountLines sees one more line. So the list closes with
  // an empty line, and opens with another where the log has one line less than the mail asks for.
  const auto tail = core::LastLines(mainForm_.Status.Text(), kLinesInMail);
  for (const auto& line : tail) message += line + kLineEnd;
  if (tail.empty()) message += mainForm_.Status.Text() + kLineEnd;
  return message + kLineEnd + "Thank you for using Tallowin";
}

void EventNotification::SendNotification(const std::string& message) {
  if (!options_.EmailTxt.Text().empty() && !options_.SMTPTxt.Text().empty()) {
    SendTo(options_.EmailTxt.Text(), message);
  }
  if (!options_.ICQtxt.Text().empty()) {
    SendTo(options_.ICQtxt.Text() + "@" + core::endpoints::kPagerDomain, message);
  }
}

void EventNotification::SendTo(const std::string& recipient, const std::string& message) {
  // What callers have sent stands in the log as it came; a mail carries it as plain text.
  mail_.Send(mainForm_.Name(), {.szDomainName = options_.SMTPTxt.Text(),
                                .szFrom = core::endpoints::kNotificationSender,
                                .szTo = recipient,
                                .szSubject = "Tallowin Event Notification",
                                .szMessage = MailableText(message)});
}

}  // namespace tallowin::reporting
