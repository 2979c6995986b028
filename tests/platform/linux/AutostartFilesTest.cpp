
#include <gtest/gtest.h>

#include "platform/linux/CronTable.h"
#include "platform/linux/DesktopEntry.h"
#include "platform/linux/UnitFile.h"

namespace tallowin::platform::linux_host {
namespace {

TEST(DesktopEntry, CommandIsWhatWouldRun) {
  struct Case {
    std::string exec, command;
  };
  for (const auto& [exec, command] : std::vector<Case>{
           {"/usr/bin/tool", "/usr/bin/tool"},
           {"/usr/bin/tool %U", "/usr/bin/tool"},
           {"\"/opt/my tool\" %f", "/opt/my tool"},
           {R"("/opt/my tool" --x "a \"b\"" 100%%)", R"("/opt/my tool" --x "a \"b\"" 100%)"},
           {R"(/a\sb c)", "/a b c"},
           {R"(sh -c "echo \\$HOME")", "sh -c \"echo $HOME\""},
           {"tool --icon=%i \"\"", "tool --icon= \"\""},
           {"/a \"never closed", "/a \"never closed"},
           {"tool %", "tool %"},
           {"/home/u/evil%", "/home/u/evil%"},
           {"\"/home/u/evil%\" %u", "/home/u/evil%"},
           {"'/home/u/my evil' 'a\"b'", R"("/home/u/my evil" "a\"b")"},
       }) {
    const DesktopEntry entry({.text = "[Desktop Entry]\r\n Exec = " + exec + "\r\n"});
    EXPECT_EQ(entry.Command(), command);
    EXPECT_TRUE(entry.IsStarted({}, nullptr));
  }
}

/// What one session passes over, another one starts.
TEST(DesktopEntry, StartsUnderAnyReading) {
  struct Case {
    std::string text, command;
    bool starts = true;
    bool whole = true;
  };
  const std::string group = "[Desktop Entry]\n";
  for (const auto& [text, command, starts, whole] : std::vector<Case>{
           {"\xEF\xBB\xBF" + group + "Exec=/a\n", "/a"},
           {group + "Exec=/a\nComment=x\\\nHidden=true\n", "/a"},
           {group + "Comment=x\\\r\nExec=/a\r\n", "/a"},
           {group + "Exec=/a\\\nb\n", "/a\\; /ab"},
           {group + "Exec=/a\nExec=/b\n", "/a; /b"},
           {group + "Exec=/a\nHidden=true\nHidden=false\n", "/a"},
           {group + "Exec=/a\nType=Link\nType=application\n", "/a"},
           {group + "Exec=/a\nOnlyShowIn=KDE\nOnlyShowIn=Other\n", "/a"},
           {group + "Exec=/a\nTryExec=yes\nTryExec=no\n", "/a"},
           {group + "Exec=/a\n" + group + "Type=Link\n", "/a"},
           {group + "Exec=/a\nHidden=true\n", "/a", true, false},
           {group + "Exec=/a\nHidden=true\nHidden=true\n", "/a", false},
           {group + "Exec=/a\nTryExec=no\n", "/a", false},
           {"Exec=/a\n", "", false},
       }) {
    const DesktopEntry entry({.text = text, .whole = whole});
    EXPECT_EQ(entry.Command(), command) << text;
    EXPECT_EQ(entry.IsStarted({"KDE"}, [](const auto& program) { return program == "yes"; }),
              starts)
        << text;
  }
}

TEST(UnitFile, Commands) {
  struct Case {
    std::string text, command;
  };
  const UnitName unit = UnitName::Parse("my-tool@a\\x2db.service");
  for (const auto& [text, command] : std::vector<Case>{
           {"[Service]\nExecStart=/tool", "/tool"},
           {"[Service]\nExecStart=-+/tool -x", "/tool -x"},
           {"[Service]\nExecStart=@/tool name -x", "/tool -x"},
           {"[Service]\nExecStart=\"/my tool\"", "/my tool"},
           {"[Service]\nExecStart=/tool \\\n  # no part of it\n  'a b'", "/tool \"a b\""},
           {"[Service]\nExecStart=/old\nExecStart=\nExecStart = /new", "/new"},
           {"[Service]\nExecStartPre=/pre\nExecStart=/a\nExecStart=/b", "/a; /b"},
           {"[Service]\nExecStartPre=/pre\nExecStartPost=/post", "/pre; /post"},
           {"[Service]\nExecStart=/tool %i %I %p %n %h %% %z %",
            "/tool a\\x2db a-b my-tool my-tool@a\\x2db.service /home/me % %z %"},
           {"[Install]\nExecStart=/no\n[Unit]\nExecStart=/no\n[X-Mine]\nExecStart=/no", ""},
           {"[Service]\nDescription=x \\\n\nExecStart=/tool\n", "/tool"},
           {"[Service]\r\nDescription=x \\\\\r\nExecStart=/tool \\\r\n-x\r\n", "/tool -x"},
           {"[Service]\nDescription=x\rExecStart=/tool\n", "/tool"},
           {"ExecStart", ""},
       }) {
    UnitCommands commands;
    commands.Apply(UnitFile({.text = text}));
    EXPECT_EQ(commands.Command(unit, {{'h', "/home/me"}}), command) << text;
  }
  EXPECT_FALSE(UnitName::Parse("readme.txt").IsValid());
  EXPECT_FALSE(UnitName::Parse(".service").IsValid());
  EXPECT_TRUE(UnitName::Parse("a@.service").IsTemplate());
}

TEST(CronTable, RebootLines) {
  const auto lines = RebootLines(
      "  @reboot\troot  /a b \\% c % input\r\nPATH=/x\n#@reboot root /no\n@rebooted root /no\n"
      "-@REBOOT root /upper\n@reboot root\n@reboot",
      TableOf::System);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].user, "root");
  EXPECT_EQ(lines[0].command, "/a b % c");
  EXPECT_EQ(lines[1].command, "/upper");
  EXPECT_EQ(RebootLines("@reboot /a b", TableOf::User)[0].command, "/a b");
  EXPECT_EQ(WithoutLine("a\nbb\nb\nb", "b"), "a\nbb\nb");
  EXPECT_EQ(WithoutLine("a\nb", "b"), "a\n");
  EXPECT_EQ(WithoutLine("a\n", "x"), "a\n");
}

}  // namespace
}  // namespace tallowin::platform::linux_host
