#include "reporting/ReportHacker.h"

#include <cmath>

#include "core/Endpoints.h"

namespace tallowin::reporting {

namespace {

constexpr std::string_view kRowEnd = "\r\n";

std::string Complaint() {
  return std::string(
             "Dear Sir/Madam,\r\n"
             "\r\n"
             "I have been using Tallowin 4 Hacker Defense Suite from \r\n") +
         core::endpoints::kWebSite +
         " and it has detected a user trying to access my \r\n"
         "PC whilst I was on the internet. I have used a whois lookup to find that the \r\n"
         "user seems to be using your ISP.\r\n"
         "\r\n"
         "I have attached a log file to this e-mail which contains information about this \r\n"
         "hacking attempt.\r\n"
         "\r\n"
         "Please could you take the appropriate action.\r\n"
         "\r\n"
         "Yours Sincerely,\r\n";
}

}  // namespace

ReportHacker::ReportHacker()
    : Form("reporthacker"),
      defaultmsg{*this, "defaultmsg", {.text = Complaint(), .multiLine = true}} {
  SetCaption("Automated Hacker Report System");
  defaultmsg.SetVisible(false);
  fromname.OnChange = [this] { UpdatePreview(); };
  fromemail.OnChange = [this] { UpdatePreview(); };
  emaillist.OnClick = [this] { emaillist_Click(); };
  Command2.OnClick = [this] { Hide(); };
}

void ReportHacker::UpdatePreview() {
  fromtxt.SetText(fromname.Text().empty() ? fromemail.Text()
                                          : fromname.Text() + " <" + fromemail.Text() + ">");
  bodytxt.SetText(defaultmsg.Text() + fromtxt.Text());
}

void ReportHacker::emaillist_Click() {
  std::string recipients;
  for (std::size_t i = 0; i < emaillist.ListCount(); ++i) {
    if (emaillist.Selected(i)) recipients.append(emaillist.List(i)).append(kRowEnd);
  }
  if (recipients.ends_with(kRowEnd)) recipients.resize(recipients.size() - kRowEnd.size());
  totxt.SetText(std::move(recipients));
}

void ReportHacker::emaillist_MouseMove(const MouseOverList& mouse) {
  constexpr double kNear = 10;
  constexpr double kFar = 80;
  const bool inside = mouse.x > kNear && mouse.x < mouse.listWidth - kFar && mouse.y > kNear &&
                      mouse.y < mouse.listHeight - kFar;
  if (!inside) return;
  constexpr double kFrame = 40;
  constexpr double kTwipsPerPoint = 20;
  constexpr double kBetweenRows = 30;
  const double visibleRows =
      (mouse.listHeight - kFrame) / (mouse.fontSize * kTwipsPerPoint + kBetweenRows);
  const double rowHeight = mouse.listHeight / visibleRows;
  const auto row = static_cast<std::size_t>(std::floor(mouse.y / rowHeight)) + mouse.topIndex;
  emaillist.SetToolTip(row < emaillist.ListCount() ? emaillist.List(row) : std::string());
}

}  // namespace tallowin::reporting
