#include "reporting/Mail.h"

#include <string>

namespace tallowin::reporting {

void Mail::Send(std::string_view form, const platform::SmtpMail& mail) {
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
