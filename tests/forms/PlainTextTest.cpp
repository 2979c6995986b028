#include "forms/PlainText.h"

#include <gtest/gtest.h>

namespace tallowin::forms {
namespace {

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
