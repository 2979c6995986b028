#include "console/Console.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "console/Escapes.h"
#include "support/FakeHost.h"

namespace tallowin::console {
namespace {

using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using namespace std::string_literals;
using ::testing::StartsWith;

class FakeTerminal : public platform::Terminal {
 public:
  void ReadLines(std::function<void(std::string)> onLine, std::function<void()> onEnd) override {
    line = std::move(onLine);
    end = std::move(onEnd);
  }
  void Write(std::string_view text) override { output += text; }

  std::function<void(std::string)> line;
  std::function<void()> end;
  std::string output;
};

struct Panel : forms::Form {
  Panel() : Form("Panel") { SetCaption("A panel"); }
  forms::TextBox Log{*this, "Log", {.text = "old\r\n", .multiLine = true, .locked = true}};
  forms::TextBox Notes{*this, "Notes", {.multiLine = true}};
  forms::TextBox Code{*this, "Code", {.maxLength = 3}};
  forms::CheckBox Switch{*this, "Switch", "On", forms::CheckBox::Greyed};
  forms::ComboBox Choice{*this, "Choice", "choose"};
  forms::Button Go{*this, "Go", "&Go"};
  forms::ToolBar Tools{*this, "Tools", {{"dig", "Dig"}, {"rake", "Rake it"}}};
  forms::MenuItem Menu{*this, "Menu", "&Menu"};
  forms::MenuItem Item{Menu, "Item", "&Item"};
  forms::MenuItem Line{Menu, "Line", "-"};
  forms::Frame Cellar{*this, "Cellar", "Cellar"};
  forms::TextBox Buried{Cellar, "Buried", {}};
};

class ConsoleTest : public ::testing::Test {
 protected:
  ConsoleTest() {
    forms.Add(panel);
    console.Attach(forms, panel.Log, [this] { loop.End(0); });
  }

  void Send(const std::vector<std::string>& lines) {
    for (const auto& line : lines) {
      loop.Post([this, line] { terminal.line(line); });
    }
  }
  void SendEnd() {
    loop.Post([this] { terminal.end(); });
  }

  std::string Run() {
    terminal.output.clear();
    while (!loop.pending.empty()) loop.DoEvents();
    return terminal.output;
  }
  std::string Do(const std::string& line) {
    Send({line});
    return Run();
  }
  forms::Answer Ask(const std::string& text, bool yesNo = true) {
    return console.Questions().MsgBox(
        text, yesNo ? forms::MessageBoxStyle::YesNoQuestion : forms::MessageBoxStyle::Information,
        "Title");
  }

  test::FakeLoop loop;
  FakeTerminal terminal;
  Panel panel;
  forms::Forms forms;
  Console console{terminal, loop};
};

TEST_F(ConsoleTest, PrintsTheStatusLineByLineAndNothingOfWhatIsCleared) {
  EXPECT_EQ(terminal.output, "old\n");
  terminal.output.clear();
  panel.Log.AppendText("one\r\ntwo\r\n");
  panel.Log.SetText("");
  EXPECT_EQ(terminal.output, "one\ntwo\n");
  panel.Log.SetText("fresh");
  panel.Log.AppendText("\x1b]0;owned\a\x9b 2J\0\r\xe2\x80\xae"s.append("\r\n"));
  EXPECT_EQ(terminal.output, "one\ntwo\nfresh\n\\x1b]0;owned\\x07\\x9b 2J\\x00\n\\xe2\\x80\\xae\n");
}

TEST_F(ConsoleTest, ShowsFormsAndControls) {
  panel.Go.SetEnabled(false);
  panel.Cellar.SetVisible(false);
  panel.Choice.AddItem("first");
  panel.Choice.AddItem("sec\tond");
  panel.Item.SetChecked(true);
  panel.Notes.SetText("\x1b[2J");
  panel.Code.SetText(std::string(119, 'a') + "\xc3\xa4" + "b");
  EXPECT_EQ(Do("forms"), "Panel\tForm\t\thidden\tA panel\n");
  EXPECT_EQ(Do("show Panel"),
            "Panel\tForm\t\thidden\tA panel\n"
            "Log\tTextBox\told\\r\\n\n"
            "Notes\tTextBox\t\\x1b[2J\n"
            "Code\tTextBox\t" +
                std::string(119, 'a') +
                "\xc3\xa4... (122 bytes)\n"
                "Switch\tCheckBox\t2\t\tOn\n"
                "Choice\tComboBox\tchoose\n\t0\tfirst\n\t1\tsec\\tond\n"
                "Go\tButton\t\tdisabled\t&Go\n"
                "Tools\tToolBar\n\tdig\tDig\n\trake\tRake it\n"
                "Menu\tMenuItem\t\t\t&Menu\n"
                "Item\tMenuItem\tchecked\t\t&Item\n"
                "Line\tMenuItem\t\t\t-\n"
                "Cellar\tFrame\t\thidden\tCellar\n"
                "Buried\tTextBox\n");
}

TEST_F(ConsoleTest, EveryTextThatGetPrintsCanBeSetAgain) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  all += "\\x41 \xc3\xa4 \\n";
  panel.Notes.SetText(all);
  std::string printed = Do("get Panel.Notes");
  EXPECT_EQ(printed.find_first_of("\n\r\t\x1b"), printed.size() - 1);
  printed.pop_back();
  panel.Notes.SetText("");
  EXPECT_EQ(Do("set Panel.Notes " + printed), "");
  EXPECT_EQ(panel.Notes.Text(), all);
  for (const auto* bad : {"\\", "\\q", "\\x", "\\x1", "\\xg0", "\\x-1", "end\\"}) {
    EXPECT_EQ(Unescape(bad), std::nullopt) << bad;
  }
}

TEST_F(ConsoleTest, TellsWhatIsPossibleInsteadOfWhatIsNot) {
  panel.Go.SetEnabled(false);
  panel.Cellar.SetVisible(false);
  bool pressed = false;
  panel.Go.OnClick = [&] { pressed = true; };
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"dance", "help"},
      {"\x1b[2J", "\\x1b[2J"},
      {std::string(2000000, 'x'), "xx"},
      {"help me", "nothing"},
      {"show", "FORM"},
      {"show Nothing", "Panel"},
      {"get Panel", "FORM.CONTROL"},
      {"get Panel.Nothing", "show Panel"},
      {"set Panel.Notes \\q", "backslash"},
      {"set Panel.Log new", "changed"},
      {"set Panel.Code four", "3"},
      {"set Panel.Code a\\nb", "one line"},
      {"set Panel.Switch 2", "0 or 1"},
      {"set Panel.Menu 1", "TextBox"},
      {"set Panel.Buried text", "Cellar and is hidden"},
      {"click Panel.Go", "Go is disabled"},
      {"click Panel.Line", "separator"},
      {"click Panel.Item KEY", "ToolBar"},
      {"click Panel.Tools", "buttons dig rake"},
      {"select Panel.Choice 0", "no entries"},
      {"select Panel.Choice 1x", "counted from 0"},
      {"select Panel.Choice 99999999999999999999999", "counted from 0"},
  };
  for (const auto& [line, possible] : cases) {
    const std::string shown = line.substr(0, 60);
    const std::string answer = Do(line);
    EXPECT_THAT(answer, AllOf(StartsWith("error: "), HasSubstr(possible), EndsWith("\n"))) << shown;
    EXPECT_EQ(std::count(answer.begin(), answer.end(), '\n'), 1) << shown;
    EXPECT_LT(answer.size(), 300U) << shown;
  }
  panel.Choice.AddItem("one");
  EXPECT_THAT(Do("select Panel.Choice 1"), HasSubstr("0 to 0"));
  EXPECT_FALSE(pressed);
  EXPECT_EQ(panel.Log.Text(), "old\r\n");
  EXPECT_EQ(panel.Code.Text() + panel.Notes.Text() + panel.Buried.Text(), "");
  EXPECT_EQ(panel.Switch.Value(), forms::CheckBox::Greyed);
  EXPECT_EQ(Do("") + Do(" \t"), "");
}

TEST_F(ConsoleTest, AsksAndTakesTheNextLineAsTheAnswer) {
  const std::vector<std::pair<std::string, forms::Answer>> answers = {
      {"yes", forms::Answer::Yes}, {" YES\t", forms::Answer::Yes}, {"y", forms::Answer::Yes},
      {"No", forms::Answer::No},   {"N", forms::Answer::No},
  };
  for (const auto& [line, answer] : answers) {
    Send({line});
    EXPECT_EQ(Ask("Sure?"), answer) << line;
  }
  terminal.output.clear();
  Send({"quit", "", "no"});
  EXPECT_EQ(Ask("<b>\x1b[5m\r\nreally?"), forms::Answer::No);
  EXPECT_EQ(terminal.output,
            "[?] Title\n<b>\\x1b[5m\nreally?\nyes / no\n"
            "error: the answers are: yes / no\nerror: the answers are: yes / no\n");
  terminal.output.clear();
  Send({"yes", "OK"});
  EXPECT_EQ(console.Questions().MsgBox("saved", forms::MessageBoxStyle::Plain, ""),
            forms::Answer::Ok);
  EXPECT_EQ(terminal.output, "[?] Tallowin\nsaved\nok\nerror: the answers are: ok\n");
}

TEST_F(ConsoleTest, LinesThatComeTooSoonKeepTheirOrder) {
  std::string order;
  panel.Go.OnClick = [&] {
    loop.DoEvents();  // as each status line does: the rest of the script arrives here
    order += Ask("first") == forms::Answer::Yes ? "yes " : "no ";
    loop.DoEvents();
    order += Ask("second", false) == forms::Answer::Ok ? "ok " : "";
    throw platform::RunTimeError(5, "nobody handles it");
  };
  panel.Notes.OnChange = [&] { order += "set"; };
  int unhandled = 0;
  loop.OnUnhandledError([&](const platform::RunTimeError& error) { unhandled = error.Number(); });
  Send({"click Panel.Go", "yes", "ok", "set Panel.Notes x", "get Panel.Notes"});
  SendEnd();
  EXPECT_THAT(Run(), EndsWith("ok\nx\n"));
  EXPECT_EQ(order, "yes ok set");
  EXPECT_EQ(unhandled, 5);
}

TEST_F(ConsoleTest, AModalFormTakesTheLinesBehindTheCommandThatOpensIt) {
  struct Dialog : forms::Form {
    Dialog() : Form("Dialog") {}
    forms::Button Work{*this, "Work", "Work"};
  } dialog;
  forms.Add(dialog);
  std::string order;
  panel.Go.OnClick = [&] {
    dialog.ShowModal(loop);
    order += "closed ";
  };
  dialog.Work.OnClick = [&] {
    loop.DoEvents();  // the rest of the script arrives here and waits all the same
    order += "worked ";
  };
  panel.Notes.OnChange = [&] { order += "set"; };
  Send({"click Panel.Go", "click Dialog.Work", "set Panel.Notes x", "close Dialog",
        "set Panel.Notes y"});
  EXPECT_THAT(Run(), EndsWith("error: Dialog is open, and nothing else can be used until it is "
                              "closed\n"));
  EXPECT_EQ(order, "worked closed set");
  EXPECT_EQ(panel.Notes.Text(), "y");
}

TEST_F(ConsoleTest, EndOfInputAnswersQuestionsAndLeavesTheProgramRunning) {
  panel.Go.OnClick = [&] { panel.Notes.SetText(Ask("?") == forms::Answer::No ? "no" : "yes"); };
  Send({"click Panel.Go", "what"});
  SendEnd();
  EXPECT_EQ(Run(), "[?] Title\n?\nyes / no\nerror: the answers are: yes / no\n");
  EXPECT_EQ(panel.Notes.Text(), "no");
  EXPECT_FALSE(loop.Ended());
  EXPECT_EQ(Ask("later", false), forms::Answer::Ok);
  EXPECT_EQ(Ask("later"), forms::Answer::No);
}

TEST_F(ConsoleTest, QuitLeavesEverythingThatIsUnderWay) {
  bool after = false;
  panel.Go.OnClick = [&] {
    loop.Post([this] { loop.End(0); });
    (void)Ask("?");
    after = true;
  };
  Send({"click Panel.Go"});
  EXPECT_THROW(Run(), platform::ProgramEnded);
  EXPECT_FALSE(after);
}

}  // namespace
}  // namespace tallowin::console
