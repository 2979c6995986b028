#include "nettools/ModemHangUp.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>

#include "platform/linux/LinuxDialUp.h"
#include "platform/linux/LinuxSystemShutdown.h"
#include "support/FakeHost.h"

namespace tallowin::nettools {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ModemHangUp, DropsTheLinksWithoutANameAndNoOther) {
  test::FakeDialUp dialUp;
  ModemHangUp modem(dialUp);
  modem.HangUpConnection();
  dialUp.links = {{"/1", "My provider"}, {"/2", ""}, {"/3", "  "}, {"/4", std::string("\0x", 2)}};
  modem.HangUpConnection();
  EXPECT_THAT(dialUp.hungUp, ElementsAre("/2", "/3", "/4"));

  dialUp.hungUp.clear();
  modem.ConnectionName = " My provider";
  modem.HangUpConnection();
  EXPECT_THAT(dialUp.hungUp, ElementsAre("/1"));

  dialUp.hungUp.clear();
  dialUp.result = platform::ras::kEnumerationFailed;
  modem.HangUpConnection();
  EXPECT_THAT(dialUp.hungUp, IsEmpty());
  EXPECT_EQ(modem.LastRasResult(), platform::ras::kEnumerationFailed);

  dialUp.supported = false;
  EXPECT_THROW(modem.HangUpConnection(), platform::RunTimeError);
}

TEST(ModemHangUp, AMachineWithoutTheServicesSaysSo) {
  int argc = 1;
  char name[] = "test";
  char* argv[] = {name, nullptr};
  const QCoreApplication application(argc, argv);
  const std::string nobody = "unix:path=/nonexistent/bus";
  platform::linux_host::LinuxDialUp dialUp(nobody);
  ModemHangUp modem(dialUp);
  modem.HangUpConnection();  // and a shutdown behind it still comes
  EXPECT_EQ(modem.LastRasResult(), platform::ras::kEnumerationFailed);
  EXPECT_EQ(dialUp.RasHangUp({"/1", ""}), platform::ras::kNoConnection);
  platform::linux_host::LinuxSystemShutdown shutdown(nobody);
  EXPECT_FALSE(shutdown.ExitWindowsEx(5, 0));
}

}  // namespace
}  // namespace tallowin::nettools
