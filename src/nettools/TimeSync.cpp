#include "nettools/TimeSync.h"

#include <utility>

#include "core/MiscRoutines.h"
#include "core/NumberText.h"
#include "nettools/DateMod.h"
#include "nettools/TimeZones.h"

namespace tallowin::nettools {

namespace {

constexpr std::chrono::milliseconds kOneMinute{60000};
constexpr std::int16_t kMinutesBetweenRequests = 15;

/// Whether it ends in a blank and a year.
bool HasShapeOfDate(std::string_view text) {
  constexpr std::size_t kYearLength = 4;
  if (text.size() <= kYearLength || text[text.size() - kYearLength - 1] != ' ') return false;
  return core::IsNumeric(text.substr(text.size() - kYearLength));
}

std::string WithoutDoubleBlanks(std::string text) {
  while (text.find("  ") != std::string::npos) text = core::ReplaceAll(text, "  ", " ");
  return text;
}

}  // namespace

TimeSync::TimeSync(Host host, core::MainForm& mainForm, core::Options& options,
                   core::StatusLog& log, const std::string& timeServer, int port)
    : host_(host),
      mainForm_(mainForm),
      options_(options),
      log_(log),
      TimeWinsock_(host.sockets.MakeUdpWinsock()),
      TimeSyncTimer_(host.loop.MakeTimer(kOneMinute, [this] { TimeSyncTimer_Timer(); })) {
  TimeWinsock_->SetRemoteHost(timeServer);
  TimeWinsock_->SetRemotePort(port);
  TimeWinsock_->SetEvents({
      .DataArrival = [this](std::int32_t) { TimeWinsock_DataArrival(); },
      .Error =
          [this](int number, const std::string& description) {
            log_.LogStatus("Error retrieving time: " + std::to_string(number) + " " + description,
                           true);
          },
  });
}

void TimeSync::SyncTimeChk_Click() {
  const bool on = options_.SyncTimeChk.Value() == forms::CheckBox::Checked;
  log_.LogStatus(on ? "Time Sync Activated" : "Time Sync Deactivated", false);
  mainForm_.timesyncmnu.SetChecked(on);
  TimeSyncTimer_->SetEnabled(on);
}

void TimeSync::synctimenowmnu_Click() {
  TimeSyncMinutes_ = 2 * kMinutesBetweenRequests;
  TimeSyncTimer_Timer();
}

void TimeSync::TimeSyncTimer_Timer() {
  ++TimeSyncMinutes_;
  if (TimeSyncMinutes_ < kMinutesBetweenRequests) return;
  TimeSyncMinutes_ = 0;
  try {
    RequestTime();
  } catch (const platform::RunTimeError& error) {
    LogError(error);
  }
}

void TimeSync::RequestTime() {
  TimeWinsock_->Close();
  host_.loop.DoEvents();
  TimeWinsock_->SendData("TimeRequest");
  host_.loop.DoEvents();
  log_.LogStatus("Requested time from time server", true);
  log_.LogStatus("Time Server: " + TimeWinsock_->RemoteHost(), false);
  log_.LogStatus("Bias from UTC: " + std::to_string(GetUtcBiasHours(host_.clock)) + " hours", true);
}

void TimeSync::TimeWinsock_DataArrival() {
  try {
    AdjustClock(TimeWinsock_->GetData());
  } catch (const platform::RunTimeError& error) {
    LogError(error);
  }
}

void TimeSync::AdjustClock(std::string reply) {
  reply = core::ReplaceAll(reply, "\r\n", "");
  if (!HasShapeOfDate(reply)) return;
  platform::RegionalSettings& regional = host_.regional;
  const auto remote = regional.ReadDate(ParseTimeText(WithoutDoubleBlanks(std::move(reply)), log_));
  log_.LogStatus("Time from internet server: " + regional.GeneralDate(remote), true);
  log_.LogStatus(
      "Time from local machine: " + regional.GeneralDate(regional.ToWallTime(regional.Now())),
      true);
  const auto adjusted = remote + std::chrono::hours(GetUtcBiasHours(host_.clock));
  log_.LogStatus("Time adjusted to local timezone: " + regional.GeneralDate(adjusted), true);
  log_.LogStatus("Local time adjusted to remote clock", true);
  const auto day = std::chrono::floor<std::chrono::days>(adjusted);
  host_.clock.SetTime(adjusted - day);
  host_.clock.SetDate(std::chrono::year_month_day(day));
}

void TimeSync::LogError(const platform::RunTimeError& error) {
  // Lines of this program have no numbers: 0 is what a runtime says then.
  constexpr int kLineNumber = 0;
  log_.LogStatus("Error: " + std::to_string(error.Number()) + " " + error.Description() +
                     " Code#: " + std::to_string(kLineNumber),
                 false);
}

}  // namespace tallowin::nettools
