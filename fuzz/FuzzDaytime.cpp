// The reply of a daytime server, up to the clock, and the date in it as other regions write it.
#include <QLocale>
#include <array>
#include <string>

#include "Check.h"
#include "HostInMemory.h"
#include "core/StatusLog.h"
#include "nettools/TimeSync.h"
#include "platform/linux/LinuxRegionalSettings.h"
#include "platform/linux/LocaleDates.h"

namespace {

using tallowin::fuzz::Require;
namespace linux_host = tallowin::platform::linux_host;

/// The parts of the program that a reply goes through.
struct Guard {
  tallowin::test::FakeHost& host = tallowin::fuzz::HostInMemory();
  linux_host::LinuxRegionalSettings regional;
  tallowin::core::MainForm mainForm;
  tallowin::core::Options options;
  tallowin::core::TallowinModule module{host.paths, host.system};
  tallowin::core::StatusLog log{mainForm, options, module, host.loop, regional};
  tallowin::nettools::TimeSync timeSync{
      {host.sockets, regional, host.clock, host.loop}, mainForm, options, log, "time.test", 13};
};

void SetClock(Guard& guard, std::string_view reply, std::int32_t bias) {
  auto& host = guard.host;
  host.clock.bias = bias;
  host.clock.times.clear();
  host.clock.dates.clear();
  host.sockets.udp.received = reply;
  host.sockets.udp.events.DataArrival(static_cast<std::int32_t>(reply.size()));
  Require(host.clock.times.size() == host.clock.dates.size(), "time and date are set together");
  Require(host.clock.times.size() <= 1, "and once");
  for (const auto time : host.clock.times) {
    Require(time.count() >= 0 && time < std::chrono::hours(24), "to a time of the day");
  }
  for (const auto date : host.clock.dates) Require(date.ok(), "and a date that there is");
}

void ReadDate(const QLocale& locale, std::string_view text) {
  const auto read = linux_host::ReadGeneralDate(locale, text);
  if (!read) return;
  const auto again =
      linux_host::ReadGeneralDate(locale, linux_host::GeneralDateText(locale, *read));
  Require(again == read, "a date that was read is read again as it is written");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Guard guard;
  static const std::array<QLocale, 5> locales = {QLocale("C"), QLocale("en_US"), QLocale("de_DE"),
                                                 QLocale("ja_JP"), QLocale("fa_IR")};
  const std::string_view reply = tallowin::fuzz::TextOf(data, size);
  for (const std::int32_t bias : {0, -840, 720}) SetClock(guard, reply, bias);
  guard.mainForm.Status.SetText("");
  for (const QLocale& locale : locales) ReadDate(locale, reply);
  return 0;
}
