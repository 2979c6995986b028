#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "analysis/ListViewMod.h"
#include "analysis/ModList9x.h"
#include "analysis/ProcessManager.h"
#include "support/FakeHost.h"
#include "support/Program.h"

namespace tallowin::analysis {
namespace {

using forms::Answer;
using testing::ElementsAre;
using testing::IsEmpty;

struct ProcessManagerTest : testing::Test {
  test::FakeHost host;
  test::Program program{host};
  ProcessManFrm& form = program.tallowin.ProcessManFrm();
  std::string trojan = host.folder.Path() + "/trojan";

  void SetUp() override {
    std::ofstream(trojan) << "a TROJAN";
    host.processes.running = {
        {.processId = 0, .exeFile = std::string("kernel\0", 7)},
        {.processId = 7, .basePriority = 4, .exeFile = std::string("bare\0", 5)},
        {.processId = 0xFFFFFFF0, .basePriority = 24, .exeFile = trojan + '\0'}};
    host.processes.modules[7] = {{0xFFFFFFFFFFFFFFFF, trojan}, {4096, "/gone.so"}};
    host.ImportPresets(0, 0);
    program.Start();
    program.tallowin.MainForm().procman.Click();
  }
  std::vector<std::string> Asked() {
    std::vector<std::string> titles;
    for (const auto& asked : std::exchange(program.questions.asked, {})) {
      titles.push_back(asked.title);
    }
    return titles;
  }
};

TEST_F(ProcessManagerTest, TheListAndItsRatings) {
  EXPECT_EQ(LVToString(form.ProcView1),
            "bare\t7\t04 Idle\t\t\r\n" + trojan + "\t-16\t24 Realtime\t\t\r\n");
  EXPECT_EQ(
      PriorityText(5) + PriorityText(8) + PriorityText(9) + PriorityText(13) + PriorityText(14),
      "05 Normal08 Normal09 High13 High14 Realtime");
  // Rated by what is in the file, and by no file of that name in the folder of the start.
  host.paths.patterns.insert("bare");
  std::vector<forms::MousePointer> pointers;
  host.loop.Post([&] { pointers.push_back(form.MousePointer()); });
  form.ChkScanProcs.SetValue(1);
  form.Toolbar1.Click("refresh");
  EXPECT_EQ(LVToString(form.ProcView1), "bare\t7\t04 Idle\tFile Not Found\tFile Not Found\r\n" +
                                            trojan +
                                            "\t-16\t24 Realtime\tHigh\tNo Virii Found\r\n");
  EXPECT_THAT(pointers, ElementsAre(forms::MousePointer::Hourglass));
  EXPECT_EQ(form.MousePointer(), forms::MousePointer::Normal);
}

TEST_F(ProcessManagerTest, ARefreshInTheMiddleOfAScan) {
  form.ChkScanProcs.SetValue(1);
  host.processes.running.push_back(host.processes.running.back());
  host.loop.Post([&] {
    host.processes.running.resize(2);
    form.Toolbar1.Click("refresh");
  });
  form.Toolbar1.Click("refresh");
  EXPECT_EQ(form.ProcView1.RowCount(), 1U);
  EXPECT_THAT(Asked(), IsEmpty());
}

TEST_F(ProcessManagerTest, Terminate) {
  form.Toolbar1.Click("terminate");
  EXPECT_EQ(program.questions.asked[0].text, "Object variable or With block variable not set");
  EXPECT_THAT(Asked(), ElementsAre("Error"));
  form.ProcView1.Select(1);
  program.questions.answers = {Answer::No, Answer::Yes};
  form.Toolbar1.Click("terminate");
  EXPECT_THAT(host.processes.terminated, IsEmpty());
  form.Toolbar1.Click("terminate");
  EXPECT_EQ(program.questions.asked[0].text,
            "Are you sure you wish to terminate the process:\r\n" + trojan);
  EXPECT_THAT(host.processes.terminated, ElementsAre(0xFFFFFFF0));
  EXPECT_EQ(form.ProcView1.RowCount(), 1U);
  host.processes.running.push_back({.processId = 9, .exeFile = std::string("/a\n\x1B?\0", 6)});
  form.Toolbar1.Click("refresh");
  form.ProcView1.Select(1);
  form.Toolbar1.Click("terminate");
  EXPECT_THAT(program.questions.asked.back().text, testing::EndsWith(":\r\n/a\\x0a\\x1b?"));
}

TEST_F(ProcessManagerTest, OnlyTheWholeWordDeletesAndOnlyAProgramThatIsKnown) {
  form.ProcView1.Select(1);
  program.questions.typed = {" REMOVEFILE", "", "removefile", "REMOVEFILE"};
  host.files.undeletable.insert(trojan);
  for (int i = 0; i < 2; ++i) form.Toolbar1.Click("terminateanddel");
  EXPECT_THAT(host.processes.terminated, IsEmpty());
  form.Toolbar1.Click("terminateanddel");
  EXPECT_EQ(Asked().back(), "Could not remove file");
  EXPECT_EQ(form.ProcView1.RowCount(), 2U) << "no refresh";
  form.ProcView1.Select(0);
  form.Toolbar1.Click("terminateanddel");
  EXPECT_EQ(program.questions.asked.back().text, "File not found");
  EXPECT_THAT(host.processes.terminated, ElementsAre(0xFFFFFFF0, 7));
}

TEST(ModList9x, ProcessPathFromId) {
  test::FakeHost host;
  const core::TallowinModule module(host.paths, host.system);
  const core::MiscRoutines misc(host.paths, host.loop);
  ModList9x list(host.processes, module, misc);
  host.processes.modules[5] = {{1, "/bin/a"}, {2, "/lib/b"}};
  host.processes.modules[6] = {{1, "\\SystemRoot\\smss.exe"}};
  host.processes.modules[7] = {{1, "\\??\\/winlogon.exe"}};
  EXPECT_EQ(list.ProcessPathFromId(5), "/bin/a");
  EXPECT_EQ(list.ProcessPathFromId(6), host.folder.Path() + "/windows/smss.exe");
  EXPECT_EQ(list.ProcessPathFromId(7), "/winlogon.exe");
  EXPECT_EQ(list.ProcessPathFromId(8), "System");
  EXPECT_EQ(list.ProcessPathFromId(9), "Error");
  host.processes.modulesResult = platform::processes::kAccessDenied;
  EXPECT_EQ(list.ProcessPathFromId(5), host.folder.Path() + "/system/csrss.exe");
  host.processes.modulesResult = platform::processes::kNoSuchProcess;
  EXPECT_EQ(list.ProcessPathFromId(5), "Error");
}

}  // namespace
}  // namespace tallowin::analysis
