// The page that the update check fetches.
#include "Check.h"
#include "HostInMemory.h"
#include "core/Runwithbas.h"
#include "reporting/UpdateCheck.h"

namespace {

using tallowin::fuzz::Require;

bool IsOfTheWeb(std::string_view opened) {
  const std::string lower = tallowin::test::Lower(opened);
  return lower.starts_with("open http:") || lower.starts_with("open https:") ||
         lower.starts_with("open ftp:");
}

bool IsOneLine(const std::string& text) { return text.find_first_of("\r\n") == std::string::npos; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  auto& host = tallowin::fuzz::HostInMemory();
  host.http.page = tallowin::fuzz::TextOf(data, size);
  host.http.asked.clear();
  host.shell.opened.clear();
  tallowin::core::TallowinModule module(host.paths, host.system);
  module.SetAppVersion(4, 1, 0);
  tallowin::reporting::AutoUpdate form;
  tallowin::reporting::HTTPModule http(host.http, host.loop);
  tallowin::core::Runwithbas shell(host.shell);
  tallowin::reporting::UpdateCheck check(form, module, http, shell, host.loop,
                                         "https://update.test/");
  bool complete = true;
  try {
    check.Show();
  } catch (const tallowin::platform::RunTimeError& error) {
    complete = false;
    const int number = error.Number();
    Require(number == 5 || number == 6 || number == 13, "no other error comes of a page");
  }
  Require(form.Command1.Enabled() == complete, "a check that ends can be repeated");
  Require(IsOneLine(form.LatestVer.Caption()) && IsOneLine(form.RlsDateTxt.Caption()),
          "version and date are a line each");
  Require(form.Text1.Text().size() <= 2 * size, "the notes are a part of the page");
  form.Command2.Click();
  for (const auto& opened : host.shell.opened) {
    Require(IsOfTheWeb(opened) && IsOneLine(opened), "only pages are opened");
  }
  return 0;
}
