// The answer of a whois server: logged, shown, searched for mail addresses, and written to these.
#include <set>

#include "Program.h"
#include "platform/linux/MailAddress.h"

namespace {

using tallowin::fuzz::Program;
using tallowin::fuzz::Require;
namespace linux_host = tallowin::platform::linux_host;

/// The first server says it, the others nothing.
void Ask(Program& program, const std::string& answer) {
  program.tallowin.MainForm().LoggedIPs.SetText("192.0.2.7");
  program.Do([&] { program.tallowin.MainForm().Toolbar1.Click("whois"); });
  const tallowin::core::Endpoints endpoints;
  for (const std::string& server : endpoints.whoisServers) {
    auto* socket = program.host.sockets.ConnectingTo(server);
    Require(socket != nullptr, "each server is asked");
    program.Do([&] { socket->ServerAccepts(); });
    if (server == endpoints.whoisServers.front()) program.Do([&] { socket->ServerSends(answer); });
    program.Do([&] { socket->ServerCloses(); });
  }
  Require(program.tallowin.MainForm().LoggedIPs.Enabled(), "a run ends with the last server");
}

void Report(Program& program, tallowin::forms::ListBox& list) {
  auto& form = program.tallowin.ReportHacker();
  for (std::size_t i = 0; i < list.ListCount(); ++i) {
    if (!list.Selected(i)) list.Select(i);
  }
  form.fromemail.SetText("owner@home.example");
  program.Do([&] { form.Command1.Click(); });
  Require(program.host.smtp.mails.size() == 1, "one mail for all");
  for (const auto& who : linux_host::ParseMailAddresses(program.host.smtp.mails.front().szTo)) {
    Require(who.address.find_first_of(" \r\n<>,;") == std::string::npos, "to addresses alone");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Program program([](tallowin::test::FakeHost& host) { host.ImportPresets(0, 1); });
  program.Forget();
  Ask(program, std::string(tallowin::fuzz::TextOf(data, size)));
  Require(tallowin::fuzz::IsPlain(program.terminal.output), "the terminal shows plain text");

  auto& list = program.tallowin.ReportHacker().emaillist;
  std::set<std::string> seen;
  for (std::size_t i = 0; i < list.ListCount(); ++i) {
    const std::string& word = list.List(i);
    const auto at = word.find('@');
    Require(at != std::string::npos && word.find('.', at) != std::string::npos,
            "each entry has the shape of an address");
    Require(word.find_first_of(" \r\n") == std::string::npos, "and is one word");
    // Beyond that many comparisons duplicates stay.
    Require(list.ListCount() > 256 || seen.insert(word).second, "and stands there once");
  }
  Report(program, list);
  return 0;
}
