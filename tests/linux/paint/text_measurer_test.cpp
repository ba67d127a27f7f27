#include "linux/paint/text_measurer.h"

#include <gtest/gtest.h>

#include <limits>

#include "scenes.h"

namespace orvane::testing_pictures {
namespace {

const std::string longTitle = "Design review with a very long title that will not fit on two lines";

TEST(TextMeasurer, OneLineWithoutALimit) {
  const Studio studio;
  const TextExtent extent = studio.measurer->measure(longTitle, {{15}}, unlimitedWidth);
  EXPECT_GT(extent.size.width, 400);
  EXPECT_FALSE(extent.truncated);
  EXPECT_EQ(extent.firstBaseline, extent.lastBaseline);
  // DejaVu Sans: 1901 units above the baseline and 483 below, of 2048.
  EXPECT_NEAR(extent.size.height, 15 * 2384.0 / 2048, 0.1);
  EXPECT_NEAR(extent.firstBaseline, 15 * 1901.0 / 2048, 0.1);
}

TEST(TextMeasurer, WrapsAndCutsAfterTheLineLimit) {
  const Studio studio;
  const TextExtent free = studio.measurer->measure(longTitle, {{15}}, 150);
  const TextExtent two = studio.measurer->measure(longTitle, {{15}, false, 2}, 150);
  const TextExtent one = studio.measurer->measure(longTitle, {{15}, false, 1}, 150);
  EXPECT_FALSE(free.truncated);
  EXPECT_TRUE(two.truncated);
  EXPECT_TRUE(one.truncated);
  EXPECT_GT(free.size.height, two.size.height);
  EXPECT_NEAR(two.size.height, 2 * one.size.height, 1e-9);
  EXPECT_NEAR(two.lastBaseline - two.firstBaseline, one.size.height, 1e-9);
}

TEST(TextMeasurer, NeverWiderThanTheWidthAskedFor) {
  const Studio studio;
  for (double width = 0; width < 600; width += 7.3)
    for (const int limit : {0, 1, 2})
      EXPECT_LE(studio.measurer->measure(longTitle, {{15}, false, limit}, width).size.width, width);
}

TEST(TextMeasurer, ATextFitsIntoTheSizeThatItWasMeasuredToTake) {
  const Studio studio;
  for (const std::string& text : {longTitle, std::string("שלום לכולם וברוכים הבאים לפגישה שלנו"),
                                  std::string("会議とデモと長い長い題名のテストです")})
    for (double width = 30; width < 600; width += 11.7)
      for (const int limit : {0, 1, 2}) {
        const TextStyle style{{15, FontWeight::semibold}, false, limit};
        const TextExtent first = studio.measurer->measure(text, style, width);
        const TextExtent again = studio.measurer->measure(text, style, first.size.width);
        EXPECT_EQ(first.size.height, again.size.height) << text << " at " << width;
        EXPECT_EQ(first.truncated, again.truncated) << text << " at " << width;
        EXPECT_NEAR(first.size.width, again.size.width, 0.01) << text << " at " << width;
      }
}

TEST(TextMeasurer, AWordThatIsBrokenGetsNoHyphenOfOurs) {
  const Studio studio;
  const auto size = [&](const std::string& text, double width) {
    return studio.measurer->measure(text, {{15}}, width).size;
  };
  const Size ten = size(std::string(10, 'm'), unlimitedWidth);
  EXPECT_NEAR(size(std::string(40, 'm'), ten.width + 0.1).height, 4 * ten.height, 1e-9);
}

TEST(TextMeasurer, EmptyTextIsOneLineHighAndHasNoWidth) {
  const Studio studio;
  const TextExtent empty = studio.measurer->measure("", {{15}}, 100);
  EXPECT_EQ(empty.size.width, 0);
  EXPECT_EQ(empty.size.height, studio.measurer->measure("x", {{15}}, 100).size.height);
  EXPECT_FALSE(empty.truncated);
}

TEST(TextMeasurer, LinesAreEquallyHighWhateverTheScript) {
  const Studio studio;
  const double height = studio.measurer->measure("x", {{15}}, unlimitedWidth).size.height;
  for (const std::string text : {"会議", "🏡", "اجتماع", "हिन्दी", "Ǻ̂g"})
    EXPECT_EQ(studio.measurer->measure(text, {{15}}, unlimitedWidth).size.height, height) << text;
}

TEST(TextMeasurer, LineBreaksAndBrokenBytesCountAsTheHeaderSays) {
  const Studio studio;
  const auto width = [&](const std::string& text) {
    return studio.measurer->measure(text, {{15}}, unlimitedWidth).size.width;
  };
  EXPECT_EQ(width("a\nb"), width("a b"));
  EXPECT_EQ(width("a\xFF"
                  "b"),
            width("a\uFFFD"
                  "b"));
  EXPECT_EQ(studio.measurer->measure("a\nb\nc", {{15}}, unlimitedWidth).size.height,
            studio.measurer->measure("a", {{15}}, unlimitedWidth).size.height);
}

TEST(TextMeasurer, AHugeTextCostsNoMoreThanALongOne) {
  const Studio studio;
  const std::string huge(30'000'000, 'm');
  EXPECT_TRUE(studio.measurer->measure(huge, {{15}, false, 1}, 300).truncated);
}

TEST(TextMeasurer, LengthsGrowWithTheSizeAlone) {
  const Studio studio;
  const auto width = [&](double size) {
    return studio.measurer->measure(longTitle, {{size}}, unlimitedWidth).size.width;
  };
  EXPECT_NEAR(width(30), 2 * width(15), 0.6);
  EXPECT_NEAR(width(15.7) / 15.7, width(15) / 15, 0.02);
}

TEST(TextMeasurer, TabularDigitsHaveOneAdvance) {
  const auto measurer = host::makeTextMeasurer(host::makeTypesetter({"Inter", "", "en", {}}));
  const Font tabular{40, FontWeight::bold, FontDesign::standard, true};
  const Font proportional{40, FontWeight::bold};
  EXPECT_NE(measurer->advance('1', proportional), measurer->advance('0', proportional));
  for (char digit = '0'; digit <= '9'; ++digit)
    EXPECT_NEAR(measurer->advance(digit, tabular), measurer->digitAdvance(tabular), 0.1) << digit;
  EXPECT_LT(measurer->advance(':', tabular), measurer->digitAdvance(tabular));
}

TEST(TextMeasurer, TheDigitAdvanceIsTheWidestWhereDigitsDiffer) {
  const auto measurer = host::makeTextMeasurer(host::makeTypesetter({"Inter", "", "en", {}}));
  const Font font{40, FontWeight::bold};
  for (char digit = '0'; digit <= '9'; ++digit)
    EXPECT_LE(measurer->advance(digit, font), measurer->digitAdvance(font)) << digit;
}

TEST(TextMeasurer, WeightsDiffer) {
  const auto measurer = host::makeTextMeasurer(host::makeTypesetter({"Inter", "", "en", {}}));
  const auto width = [&](FontWeight weight) {
    return measurer->measure(longTitle, {{15, weight}}, unlimitedWidth).size.width;
  };
  EXPECT_LT(width(FontWeight::regular), width(FontWeight::semibold));
  EXPECT_LT(width(FontWeight::semibold), width(FontWeight::bold));
}

TEST(TextMeasurer, UppercaseIsMeasuredAsShown) {
  const Studio studio;
  const auto width = [&](const std::string& text, bool uppercase) {
    return studio.measurer->measure(text, {{15}, uppercase, 1}, unlimitedWidth).size.width;
  };
  EXPECT_EQ(width("Next Up", true), width("NEXT UP", false));
  EXPECT_EQ(width("Straße", true), width("STRASSE", false));
}

TEST(TextMeasurer, UppercaseFollowsTheLanguage) {
  const auto width = [](const std::string& language, const std::string& text, bool uppercase) {
    const auto measurer =
        host::makeTextMeasurer(host::makeTypesetter({"DejaVu Sans", "", language, {}}));
    return measurer->measure(text, {{40}, uppercase, 1}, unlimitedWidth).size.width;
  };
  // A dotted capital is as wide as an undotted one, so the letters are told apart by kerning
  // alone; what can be told is that no language loses or gains any.
  EXPECT_EQ(width("tr", "istif", true), width("tr", "İSTİF", false));
  EXPECT_EQ(width("en", "istif", true), width("en", "ISTIF", false));
}

TEST(TextMeasurer, LatinLettersHaveOneFontWhateverTheLanguage) {
  const auto widthIn = [](const std::string& language) {
    const auto measurer = host::makeTextMeasurer(host::makeTypesetter({"", "", language, {}}));
    return measurer->measure(longTitle, {{15}}, unlimitedWidth).size.width;
  };
  const double width = widthIn("en");
  for (const char* language : {"de", "ja", "ar", "el", "zh-cn"})
    EXPECT_EQ(widthIn(language), width) << language;
}

TEST(TextMeasurer, WidthsThatMakeNoSenseDoNoHarm) {
  const Studio studio;
  for (const double width : {0.0, -5.0, -std::numeric_limits<double>::infinity()})
    EXPECT_EQ(studio.measurer->measure("word", {{15}}, width).size.width, 0) << width;
  EXPECT_GT(studio.measurer->measure("word", {{15}}, 1e300).size.width, 0);
  EXPECT_GE(studio.measurer->measure("word", {{0}}, 100).size.width, 0);
  EXPECT_GE(studio.measurer->measure("word", {{-3}}, 100).size.width, 0);
  EXPECT_GE(studio.measurer->advance('\n', {15}), 0);
  EXPECT_GE(studio.measurer->advance('\xE9', {15}), 0);
}

TEST(TextMeasurer, AFamilyThatIsNotInstalledFallsBack) {
  const auto measurer =
      host::makeTextMeasurer(host::makeTypesetter({"No Such Family", "Nor This One", "", {}}));
  const Font rounded{20, FontWeight::bold, FontDesign::rounded};
  EXPECT_GT(measurer->measure("Weekday", {rounded}, unlimitedWidth).size.width, 50);
}

TEST(TextMeasurer, ARoundedFamilyIsTakenWhereOneIsNamed) {
  const auto measurer =
      host::makeTextMeasurer(host::makeTypesetter({"DejaVu Sans", "Inter", "en", {}}));
  const auto inter = host::makeTextMeasurer(host::makeTypesetter({"Inter", "", "en", {}}));
  const TextStyle rounded{{20, FontWeight::bold, FontDesign::rounded}};
  const TextStyle standard{{20, FontWeight::bold}};
  const double width = measurer->measure("Weekday", rounded, unlimitedWidth).size.width;
  EXPECT_EQ(width, inter->measure("Weekday", standard, unlimitedWidth).size.width);
  EXPECT_NE(width, measurer->measure("Weekday", standard, unlimitedWidth).size.width);
}

// A list of families counts from its first one that is installed, as the rounded design relies on.
TEST(TextMeasurer, FamiliesThatAreMissingArePassedOver) {
  const auto listed = host::makeTextMeasurer(
      host::makeTypesetter({"No Such Family,Nor This One,Inter,DejaVu Sans", "", "en", {}}));
  const auto inter = host::makeTextMeasurer(host::makeTypesetter({"Inter", "", "en", {}}));
  const TextStyle style{{20, FontWeight::bold}};
  EXPECT_EQ(listed->measure("Weekday", style, unlimitedWidth).size,
            inter->measure("Weekday", style, unlimitedWidth).size);
}

TEST(TextMeasurer, TheSystemsFontIsFound) {
  const auto measurer = host::makeTextMeasurer(host::makeTypesetter());
  for (const FontDesign design : {FontDesign::standard, FontDesign::rounded})
    EXPECT_GT(
        measurer->measure("Weekday", {{20, FontWeight::bold, design}}, unlimitedWidth).size.width,
        50);
}

}  // namespace
}  // namespace orvane::testing_pictures
