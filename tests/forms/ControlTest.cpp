#include <gtest/gtest.h>

#include <vector>

#include "forms/Controls.h"
#include "forms/Form.h"
#include "forms/PlainText.h"
#include "platform/RunTimeError.h"

namespace tallowin::forms {
namespace {

struct SmallForm : Form {
  SmallForm() : Form("SmallForm") {}
  MenuItem menu{*this, "menu", "&Menu"};
  MenuItem item{menu, "item", "&Item"};
  Frame frame{*this, "frame", "Frame"};
  CheckBox box{frame, "box", "Box", CheckBox::Greyed};
  TextBox text{frame, "text", {}};
  ComboBox list{frame, "list", "choose"};
};

TEST(Control, ASetterTellsObserversThenRunsTheHandlerAndOnlyOnAChange) {
  SmallForm form;
  std::string order;
  form.box.OnClick = [&] { order += "h" + std::to_string(form.box.Value()); };
  const auto observation = form.box.Observe(
      [&](const Change& change) { order += change.property == Property::Everything ? "e" : "o"; });
  EXPECT_EQ(order, "e") << "the present state comes at once";
  form.box.SetValue(CheckBox::Greyed);
  EXPECT_EQ(order, "e");
  form.box.SetValue(1);
  form.box.SetValue(1);
  form.box.SetValue(0);
  EXPECT_EQ(order, "eoh1oh0");
  EXPECT_THROW(form.box.SetValue(3), platform::RunTimeError);
}

TEST(Control, ObserversMayComeAndGoWhileTheyAreTold) {
  SmallForm form;
  std::vector<Observation> observations;
  int told = 0;
  observations.push_back(form.text.Observe([&](const Change& change) {
    ++told;
    if (change.property != Property::Text) return;
    observations.push_back(form.text.Observe([&](const Change&) { ++told; }));
    observations.front().reset();
    form.text.AppendText("nested");
  }));
  form.text.SetText("a");
  EXPECT_EQ(form.text.Text(), "anested");
  EXPECT_EQ(told, 5) << "first, change; then the new one: at once, nested, and the outer change";
  form.text.SetText("b");
  EXPECT_EQ(told, 6);
}

TEST(Control, FoundByNameAndUsableOnlyInUsableContainers) {
  SmallForm form;
  EXPECT_EQ(form.Find("item"), &form.item);
  EXPECT_EQ(form.Find("Item"), nullptr);
  EXPECT_EQ(form.Controls().size(), 6U);
  EXPECT_TRUE(form.box.Usable()) << "the form need not be on show";
  form.frame.SetEnabled(false);
  EXPECT_FALSE(form.box.Usable());
  form.menu.SetVisible(false);
  EXPECT_FALSE(form.item.Usable());
}

TEST(Control, TextGrowsByTheAdditionAlone) {
  SmallForm form;
  std::string seen;
  const auto observation = form.text.Observe([&](const Change& change) {
    if (change.property == Property::AppendedText) seen += change.addition;
  });
  int changes = 0;
  form.text.OnChange = [&] { ++changes; };
  form.text.AppendText("one");
  form.text.AppendText("");
  form.text.AppendText(std::string("\0two", 4));
  EXPECT_EQ(form.text.Text(), std::string("one\0two", 7));
  EXPECT_EQ(seen, form.text.Text());
  EXPECT_EQ(changes, 2);
  form.text.SetText(std::string(1000, 'x'));
  form.text.SetText("");
  EXPECT_LT(form.text.Text().capacity(), 1000U) << "it gives its memory back";
}

TEST(Control, ABoundedTextKeepsItsNewestPart) {
  Form form("Form");
  TextBox text(form, "text", {.capacity = 10});
  text.AppendText("0123456789");
  text.AppendText("ab");
  EXPECT_EQ(text.Text(), "56789ab");
  text.AppendText("cde");
  EXPECT_EQ(text.Text(), "56789abcde");
  text.AppendText("a text that is longer than all");
  EXPECT_EQ(text.Text(), "r than all");
}

TEST(Control, AFormTellsEachChangeOfItsStateOnce) {
  SmallForm form;
  int resized = 0;
  form.OnResize = [&] { ++resized; };
  for (int i = 0; i < 2; ++i) form.SetState(WindowState::Minimised);
  EXPECT_EQ(resized, 1);
  int activated = 0;
  form.OnActivate = [&] { activated += form.Visible() ? 1 : 0; };
  for (int i = 0; i < 2; ++i) form.Show();
  EXPECT_EQ(activated, 1);
  form.PressCloseBox();
  EXPECT_FALSE(form.Visible());
}

TEST(PlainText, NothingThatComesOutSteersADisplay) {
  struct Case {
    std::string bytes, shown;
  };
  const Case cases[] = {
      {"plain \xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80\t<b>",
       "plain \xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80\t<b>"},
      {"a\r\nb\nc\rd", "a\nb\nc\nd"},
      {std::string("\0\x1b[2J\x7f", 6), "\\x00\\x1b[2J\\x7f"},
      {"\xc2\x9b"
       "31m",
       "\\xc2\\x9b"
       "31m"},  // the one-character form of ESC [
      {"\xe2\x80\xae"
       "gpj.exe",
       "\\xe2\\x80\\xae"
       "gpj.exe"},  // right-to-left override
      {"\xd8\x9c\xef\xb8\x8f",
       "\\xd8\\x9c\\xef\\xb8\\x8f"},                   // a direction mark, a variation selector
      {"\xf3\xa0\x81\x81", "\\xf3\\xa0\\x81\\x81"},    // an invisible tag character
      {"\xff\xc3(\xe2\x82", "\\xff\\xc3(\\xe2\\x82"},  // cut and misplaced bytes
      {"\xc0\xaf\xed\xa0\x80", "\\xc0\\xaf\\xed\\xa0\\x80"},  // overlong form, surrogate
      {"\xf4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"},           // beyond the last character
  };
  for (const auto& one : cases) EXPECT_EQ(PlainText(one.bytes), one.shown);
}

}  // namespace
}  // namespace tallowin::forms
