#include "reporting/HackerReport.h"

#include <utility>

#include "core/MiscRoutines.h"

namespace tallowin::reporting {

namespace {

constexpr std::string_view kRecipientEnd = "\r\n";

}  // namespace

HackerReport::HackerReport(ReportHacker& form, const core::Options& options, Mail& mail)
    : form_(form), options_(options), mail_(mail) {
  form_.Command1.OnClick = [this] { SendReport(); };
}

ReportHacker& HackerReport::Loaded() {
  if (!std::exchange(loaded_, true)) form_.fromemail.SetText(options_.EmailTxt.Text());
  return form_;
}

void HackerReport::Show() { Loaded().Show(); }

void HackerReport::SendReport() {
  std::string recipients = form_.totxt.Text();
  if (recipients.ends_with(kRecipientEnd)) {
    recipients.resize(recipients.size() - kRecipientEnd.size());
    form_.totxt.SetText(recipients);
  }
  mail_.Send(form_.Name(), {.szDomainName = options_.SMTPTxt.Text(),
                            .szFrom = form_.fromtxt.Text(),
                            .szTo = core::ReplaceAll(recipients, kRecipientEnd, ", "),
                            .szSubject = form_.subjecttxt.Text(),
                            .szMessage = form_.bodytxt.Text()});
}

}  // namespace tallowin::reporting
