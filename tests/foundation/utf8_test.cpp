#include "foundation/utf8.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

using namespace std::string_view_literals;

TEST(WellFormedUTF8, IsEveryCharacterThereIs) {
  for (const auto text :
       {""sv, "plain"sv, "\0"sv, "é"sv, "日本"sv, "🎂"sv, "\xC2\x80"sv, "\xE0\xA0\x80"sv,
        "\xED\x9F\xBF"sv, "\xEF\xBF\xBF"sv, "\xF0\x90\x80\x80"sv, "\xF4\x8F\xBF\xBF"sv}) {
    EXPECT_TRUE(isWellFormedUTF8(text)) << text;
  }
}

TEST(WellFormedUTF8, IsNothingElse) {
  for (const auto text :
       {"\x80"sv, "a\xBF"sv, "\xC0\x80"sv, "\xC1\xBF"sv, "\xC3"sv, "\xC3("sv, "\xE0\x9F\xBF"sv,
        "\xE2\x82"sv, "\xE2\x82("sv, "\xED\xA0\x80"sv, "\xF0\x8F\xBF\xBF"sv, "\xF0\x9F\x8E"sv,
        "\xF4\x90\x80\x80"sv, "\xF5\x80\x80\x80"sv, "\xFF"sv}) {
    EXPECT_FALSE(isWellFormedUTF8(text)) << text;
  }
}

struct Front {
  std::string_view text;
  UTF8Sequence sequence;
};

TEST(FirstUTF8Sequence, IsACharacterOrAFault) {
  for (const auto& [text, sequence] :
       {Front{"ab"sv, {1, true}}, Front{"\0"sv, {1, true}}, Front{"éa"sv, {2, true}},
        Front{"日"sv, {3, true}}, Front{"🎂a"sv, {4, true}}, Front{"\x80\x80"sv, {1, false}},
        Front{"\xC3"sv, {1, false}}, Front{"\xE2\x82("sv, {2, false}},
        Front{"\xF0\x9F\x8E"sv, {3, false}}, Front{"\xED\xA0\x80"sv, {1, false}},
        Front{"\xF5\x80"sv, {1, false}}}) {
    EXPECT_EQ(firstUTF8Sequence(text), sequence) << text;
  }
}

}  // namespace
}  // namespace orvane
