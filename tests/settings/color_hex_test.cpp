#include "settings/color_hex.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace orvane {
namespace {

struct HexCase {
  const char* text;
  std::optional<Color> color;
};

constexpr Color bytes(int red, int green, int blue) {
  return Color::srgb(red / 255.0, green / 255.0, blue / 255.0);
}

TEST(ColorFromHex, AcceptsSixDigitsAndNothingElse) {
  const HexCase cases[] = {
      {"  #3d5cf2 ", bytes(0x3D, 0x5C, 0xF2)},
      {"3D5CF2", bytes(0x3D, 0x5C, 0xF2)},
      {"\t#000000\r\n", bytes(0, 0, 0)},
      {"\u00A0#FFFFFF\u3000", bytes(255, 255, 255)},
      {"#3D5", std::nullopt},
      {"#3D5CF2FF", std::nullopt},
      {"ZZZZZZ", std::nullopt},
      {"##3D5CF2", std::nullopt},
      {"##3D5CF", std::nullopt},
      {"", std::nullopt},
      {"#", std::nullopt},
      {"      ", std::nullopt},
      {"0x3D5C", std::nullopt},
      {"3D 5CF", std::nullopt},
      {"3D5CF\xC3", std::nullopt},
  };
  for (const auto& [text, color] : cases) EXPECT_EQ(colorFromHex(text), color) << text;
}

TEST(ColorFromHex, OneSignTakesThePlaceOfADigit) {
  EXPECT_EQ(colorFromHex("+12345"), bytes(0x01, 0x23, 0x45));
  EXPECT_EQ(colorFromHex("#+FFFFF"), bytes(0x0F, 0xFF, 0xFF));
  EXPECT_EQ(colorFromHex("-00001"), bytes(0xFF, 0xFF, 0xFF));
  EXPECT_EQ(colorFromHex("-12345"), bytes(0xFE, 0xDC, 0xBB));
  EXPECT_EQ(colorFromHex("+-1234"), std::nullopt);
  EXPECT_EQ(colorFromHex("-+1234"), std::nullopt);
  EXPECT_EQ(colorFromHex("++1234"), std::nullopt);
  EXPECT_EQ(colorFromHex("--1234"), std::nullopt);
  EXPECT_EQ(colorFromHex("12345+"), std::nullopt);
}

TEST(HexFromColor, WritesUpperCaseSteps) {
  EXPECT_EQ(hexFromColor(Color::srgb(1, 0, 0)), "#FF0000");
  EXPECT_EQ(hexFromColor(Color::srgb(0.24, 0.36, 0.95)), "#3D5CF2");
  EXPECT_EQ(hexFromColor(Color::white()), "#FFFFFF");
  EXPECT_EQ(hexFromColor(Color::srgb(0, 0, 0, 0.3)), "#000000");
}

TEST(HexFromColor, HalvesRoundUp) {
  EXPECT_EQ(hexFromColor(Color::srgb(0.5, 0.5, 0.5)), "#808080");
}

TEST(HexFromColor, IsAbsentWhereAComponentIsNoNumber) {
  EXPECT_EQ(hexFromColor(Color::srgb(std::nan(""), 0, 0)), std::nullopt);
  EXPECT_EQ(hexFromColor(Color::srgb(0, std::numeric_limits<double>::infinity(), 0)), std::nullopt);
}

TEST(HexFromColor, GivesBackWhatWasRead) {
  for (int value = 0; value < 256; ++value) {
    const auto text = hexFromColor(bytes(value, 255 - value, value / 2));
    ASSERT_TRUE(text);
    EXPECT_EQ(colorFromHex(*text), bytes(value, 255 - value, value / 2));
  }
}

}  // namespace
}  // namespace orvane
