// What is typed into the terminal: commands, and answers to what they ask.
#include <string>

#include "Check.h"
#include "Program.h"
#include "platform/linux/LineReader.h"

namespace {

using tallowin::fuzz::Require;
namespace forms = tallowin::forms;

/// One control of each kind, and handlers that do what handlers may do.
struct Panel : forms::Form {
  Panel() : Form("Panel") { SetCaption("A panel"); }
  forms::TextBox Log{*this, "Log", {.multiLine = true, .locked = true, .capacity = 100'000}};
  forms::TextBox Notes{*this, "Notes", {.multiLine = true}};
  forms::TextBox Code{*this, "Code", {.maxLength = 3}};
  forms::CheckBox Switch{*this, "Switch", "On", forms::CheckBox::Greyed};
  forms::ComboBox Choice{*this, "Choice", "choose"};
  forms::ListBox Names{*this, "Names", forms::ListBox::Selection::Several};
  forms::ListView Table{*this, "Table", {"Name", "Address"}};
  forms::SSTab Pages{*this, "Pages", {"One", "Two"}};
  forms::Button Ask{*this, "Ask", "&Ask"};
  forms::Button Open{*this, "Open", "&Open"};
  forms::ToolBar Tools{*this, "Tools", {{"dig", "Dig"}, {"rake", "Rake it"}}};
  forms::MenuItem Menu{*this, "Menu", "&Menu"};
  forms::MenuItem Item{Menu, "Item", "&Item"};
};

struct Dialog : forms::Form {
  Dialog() : Form("Dialog") {}
  forms::Button Close{*this, "Close", "Close"};
};

/// One event at a time, so that what waits can be had in the middle of another event as well.
struct Loop : tallowin::test::FakeLoop {
  std::function<void()> whenNothingIsLeft;

  void DoEvents() override {
    if (pending.empty()) return whenNothingIsLeft();
    const auto event = std::move(pending.front());
    pending.pop_front();
    Deliver(event);
  }
};

struct Desk {
  Desk() {
    loop.OnUnhandledError([](const tallowin::platform::RunTimeError&) {});
    loop.whenNothingIsLeft = [this] {
      Require(dialog.Modal(), "nothing but an open form waits behind the end of the input");
      dialog.PressCloseBox();
    };
    forms.Add(panel);
    forms.Add(dialog);
    panel.Show();
    panel.Ask.OnClick = [this] { AskAll(); };
    panel.Open.OnClick = [this] { dialog.ShowModal(loop); };
    panel.Notes.OnChange = [this] {
      panel.Names.AddItem(panel.Notes.Text());
      panel.Table.AddItem(panel.Notes.Text());
      panel.Choice.AddItem(panel.Notes.Text());
      panel.Log.AppendText(panel.Notes.Text() + "\r\n");
    };
    dialog.Close.OnClick = [this] { dialog.Hide(); };
    console.Attach(forms, panel.Log, [] {});
  }

  void AskAll() {
    const std::string typed = console.Questions().InputBox("Name?", "A question");
    const auto answer = console.Questions().MsgBox("Shall it be " + typed + "?",
                                                   forms::MessageBoxStyle::YesNoQuestion, typed);
    panel.Log.AppendText(answer == forms::Answer::Yes ? typed : "no");
  }

  Loop loop;
  tallowin::fuzz::KeptOutput terminal;
  Panel panel;
  Dialog dialog;
  forms::Forms forms;
  tallowin::console::Console console{terminal, loop};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Desk desk;
  tallowin::platform::linux_host::LineReader reader;
  const auto post = [&](const std::string& line) {
    desk.loop.Post([&desk, line] { desk.terminal.line(line); });
  };
  reader.Add(tallowin::fuzz::TextOf(data, size), post);
  reader.Finish(post);
  desk.loop.Post([&] { desk.terminal.end(); });
  while (!desk.loop.pending.empty()) desk.loop.DoEvents();

  Require(tallowin::fuzz::IsPlain(desk.terminal.output), "the terminal shows plain text");
  return 0;
}
