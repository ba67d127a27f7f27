#include "linux/paint/plain_text.h"

#include <gtest/gtest.h>

namespace orvane::host {
namespace {

struct Case {
  std::string given;
  std::string expected;
};

TEST(PlainText, WellFormedTextStaysAsItIs) {
  for (const std::string text : {"", "Lunch", "Déjeuner", "会議", "🏡", "שלום", "a\u0301", "\u00A0"})
    EXPECT_EQ(plainText(text), text);
}

TEST(PlainText, BreaksAndControlCharactersAreSpaces) {
  const Case cases[] = {{"a\nb", "a b"},
                        {"a\r\nb", "a  b"},
                        {"a\tb", "a b"},
                        {{"a\0b", 3}, "a b"},
                        {"a\x7F", "a "},
                        {"a\u0085b", "a b"},
                        {"a\u2028b\u2029c", "a b c"},
                        {"\x1B[31mred", " [31mred"}};
  for (const Case& c : cases) EXPECT_EQ(plainText(c.given), c.expected);
}

TEST(PlainText, IllFormedBytesBecomeReplacementCharacters) {
  const Case cases[] = {
      {"\xFF", "\uFFFD"},            // no lead byte
      {"\x80", "\uFFFD"},            // continuation alone
      {"a\xC3", "a\uFFFD"},          // cut at the end
      {"\xC0\xAF", "\uFFFD\uFFFD"},  // overlong
      {"\xE0\x80\xAF", "\uFFFD\uFFFD\uFFFD"},
      {"\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},            // a surrogate
      {"\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},  // beyond the last character
      {"\xF0\x9F\x8Fz", "\uFFFDz"},                      // broken off: one fault
      {"caf\xE9 au lait", "caf\uFFFD au lait"},          // Latin-1
  };
  for (const Case& c : cases) EXPECT_EQ(plainText(c.given), c.expected);
}

TEST(PlainText, OverlongTextIsCutBetweenCharactersWithAnEllipsis) {
  std::string text;
  for (std::size_t i = 0; i < longestShapedText; ++i) text += "ü";
  EXPECT_EQ(plainText(text), text);
  EXPECT_EQ(plainText(text + "ü"), text + "…");
  EXPECT_EQ(plainText(std::string(50'000'000, '\xFF')).size(), longestShapedText * 3 + 3);
}

TEST(PlainText, CharactersAreTakenOffOneByOne) {
  std::string_view rest = "1é:🏡";
  EXPECT_EQ(takeCharacter(rest), "1");
  EXPECT_EQ(takeCharacter(rest), "é");
  EXPECT_EQ(takeCharacter(rest), ":");
  EXPECT_EQ(takeCharacter(rest), "🏡");
  EXPECT_TRUE(rest.empty());
}

}  // namespace
}  // namespace orvane::host
