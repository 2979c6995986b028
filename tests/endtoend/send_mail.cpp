// send-mail AUTHORITIES SERVER
//
// One mail, where certificates by these authorities are trusted. Prints the status of the sending.
#include <iostream>

#include "platform/linux/LinuxSmtp.h"

int main(int count, char** arguments) {
  using namespace tallowin::platform;
  if (count != 3) return 2;
  const linux_host::CurlLibrary library;
  linux_host::LinuxSmtp smtp(library, std::chrono::seconds(10), arguments[1]);
  std::cout << smtp.SmtpSendMail({.szDomainName = arguments[2],
                                  .szFrom = "me@home.example",
                                  .szTo = "you@home.example",
                                  .szSubject = "A subject",
                                  .szMessage = "A text"})
            << "\n";
  return 0;
}
