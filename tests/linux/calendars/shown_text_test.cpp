#include "linux/calendars/shown_text.h"

#include <gtest/gtest.h>

namespace orvane::host {
namespace {

struct Case {
  const char* name;
  std::string bytes;
  std::string text;
};

class ShownTextTest : public testing::TestWithParam<Case> {};

TEST_P(ShownTextTest, MakesOneLine) { EXPECT_EQ(shownText(GetParam().bytes), GetParam().text); }

INSTANTIATE_TEST_SUITE_P(
    Table, ShownTextTest,
    testing::Values(Case{"plain", "Work", "Work"}, Case{"empty", "", ""},
                    Case{"onlySpace", " \t\r\n ", ""}, Case{"trimmed", "\n Work \r\n", "Work"},
                    Case{"twoLines", "Work\nand play\n", "Work and play"},
                    Case{"unicode", "Käse 日本 🎉", "Käse 日本 🎉"},
                    Case{"latin1", "K\xE4se", "K\xEF\xBF\xBDse"},
                    Case{"overlong", "\xC0\xAF", "\xEF\xBF\xBD\xEF\xBF\xBD"},
                    Case{"surrogate", "\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
                    Case{"cut", "ab\xE2\x82", "ab\xEF\xBF\xBD\xEF\xBF\xBD"},
                    Case{"beyondUnicode", "\xF4\x90\x80\x80",
                         "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
                    Case{"nul", std::string("a\0b", 3), "a b"},
                    Case{"c1Control", "a\xC2\x85z", "a z"}),
    [](const auto& test) { return test.param.name; });

TEST(ShownTextLimitTest, CountsCharactersNotBytes) {
  EXPECT_EQ(shownText("äöüß", 2), "äö");
  EXPECT_EQ(shownText(std::string(100000, ' ') + "x", 2), "x");
  EXPECT_EQ(shownText(std::string(100000, 'x')).size(), 200U);
}

}  // namespace
}  // namespace orvane::host
