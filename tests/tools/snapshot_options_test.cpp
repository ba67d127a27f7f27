#include "snapshot_options.h"

#include <gmock/gmock.h>

namespace orvane::tools {
namespace {

using testing::ElementsAre;

std::vector<std::string> with(std::vector<std::string> more) {
  std::vector<std::string> words{"--calendars", "here", "--now", "2026-11-20T09:41:00"};
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

SnapshotOptions parsed(const std::vector<std::string>& words) {
  const auto result = parseArguments(words);
  if (const auto* error = std::get_if<ArgumentError>(&result)) ADD_FAILURE() << error->message;
  const auto* options = std::get_if<SnapshotOptions>(&result);
  return options ? *options : SnapshotOptions{};
}

TEST(SnapshotOptionsTest, NeedsFoldersAndAnInstant) {
  const auto options = parsed(with({}));
  EXPECT_THAT(options.calendars, ElementsAre("here"));
  EXPECT_EQ(options.now.calendar, "gregorian");
  EXPECT_EQ(options.now.year, 2026);
  EXPECT_EQ(options.now.month, 11);
  EXPECT_EQ(options.now.day, 20);
  EXPECT_EQ(options.now.hour, 9);
  EXPECT_EQ(options.now.minute, 41);
  EXPECT_EQ(options.now.second, 0);
}

TEST(SnapshotOptionsTest, HasDefaults) {
  const auto options = parsed(with({}));
  EXPECT_EQ(options.size, (Size{1920, 1080}));
  EXPECT_EQ(options.scale, 1);
  EXPECT_FALSE(options.timeZone || options.locale || options.picturePath || options.dumpPath);
  EXPECT_FALSE(options.deniesEvents || options.deniesReminders);
}

TEST(SnapshotOptionsTest, TakesEveryOption) {
  const auto options = parsed(with({"--calendars",  "there",
                                    "--timezone",   "Europe/Berlin",
                                    "--locale",     "en_US",
                                    "--size",       "1280x720",
                                    "--scale",      "1.5",
                                    "--set",        "themeMode=dark",
                                    "--set",        "ignoredWordsText=a=b",
                                    "--deny",       "events",
                                    "--deny",       "reminders",
                                    "--background", "#102030",
                                    "--out",        "picture.png",
                                    "--dump",       "dump.json"}));
  EXPECT_THAT(options.calendars, ElementsAre("here", "there"));
  EXPECT_EQ(options.timeZone, "Europe/Berlin");
  EXPECT_EQ(options.locale, "en_US");
  EXPECT_EQ(options.size, (Size{1280, 720}));
  EXPECT_EQ(options.scale, 1.5);
  EXPECT_THAT(options.settings, ElementsAre(SettingAssignment{"themeMode", "dark"},
                                            SettingAssignment{"ignoredWordsText", "a=b"}));
  EXPECT_TRUE(options.deniesEvents && options.deniesReminders);
  EXPECT_EQ(options.background, "#102030");
  EXPECT_EQ(options.picturePath, "picture.png");
  EXPECT_EQ(options.dumpPath, "dump.json");
}

TEST(SnapshotOptionsTest, TakesValuesBehindAnEqualsSign) {
  EXPECT_EQ(parsed(with({"--size=640x480"})).size, (Size{640, 480}));
  EXPECT_THAT(parsed(with({"--set=themeMode=dark"})).settings,
              ElementsAre(SettingAssignment{"themeMode", "dark"}));
}

TEST(SnapshotOptionsTest, TheSecondsMayBeLeftOut) {
  EXPECT_EQ(parsed({"--calendars", "x", "--now", "2026-11-20T09:41"}).now.second, 0);
}

TEST(SnapshotOptionsTest, HelpGoesFirst) {
  EXPECT_TRUE(std::holds_alternative<HelpRequested>(parseArguments({"--help"})));
}

struct WrongCase {
  const char* name;
  std::vector<std::string> words;
  const char* told;  // a part of the line
};

class WrongArgumentTest : public testing::TestWithParam<WrongCase> {};

TEST_P(WrongArgumentTest, IsToldInOneLine) {
  const auto result = parseArguments(GetParam().words);
  const auto* error = std::get_if<ArgumentError>(&result);
  ASSERT_NE(error, nullptr);
  EXPECT_THAT(error->message, testing::HasSubstr(GetParam().told));
  EXPECT_EQ(error->message.find('\n'), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Table, WrongArgumentTest,
    testing::Values(
        WrongCase{"nothing", {}, "--calendars is missing"},
        WrongCase{"noFolder", {"--now", "2026-11-20T09:41:00"}, "--calendars is missing"},
        WrongCase{"noInstant", {"--calendars", "x"}, "--now is missing"},
        WrongCase{"unknown", with({"--colour", "red"}), "\"--colour\""},
        WrongCase{"positional", with({"folder"}), "\"folder\""},
        WrongCase{"noValue", with({"--out"}), "--out needs a value"},
        WrongCase{"emptyValue", with({"--out", ""}), "--out"},
        WrongCase{"emptyFolder", with({"--calendars="}), "--calendars"},
        WrongCase{"dateAlone", with({"--now", "2026-11-20"}), "--now"},
        WrongCase{"dateWithZone", with({"--now", "2026-11-20T09:41:00Z"}), "--now"},
        WrongCase{"dateOfLetters", with({"--now", "2026-1a-20T09:41:00"}), "--now"},
        WrongCase{"dateWithSpace", with({"--now", "2026-11-20 09:41:00"}), "--now"},
        WrongCase{"dateWithSign", with({"--now", "2026-11-+2T09:41:00"}), "--now"},
        WrongCase{"sizeOfOne", with({"--size", "1920"}), "--size"},
        WrongCase{"sizeZero", with({"--size", "0x10"}), "--size"},
        WrongCase{"sizeNegative", with({"--size", "-5x10"}), "--size"},
        WrongCase{"sizeHuge", with({"--size", "99999x10"}), "--size"},
        WrongCase{"sizeWithRest", with({"--size", "10x10px"}), "--size"},
        WrongCase{"scaleZero", with({"--scale", "0"}), "--scale"},
        WrongCase{"scaleText", with({"--scale", "two"}), "--scale"},
        WrongCase{"scaleNan", with({"--scale", "nan"}), "--scale"},
        WrongCase{"scaleInfinite", with({"--scale", "inf"}), "--scale"},
        WrongCase{"tooLarge", with({"--out", "x.png", "--size", "16000x9000", "--scale", "8"}),
                  "too large"},
        WrongCase{"tooManyPixels", with({"--out", "x.png", "--size", "16384x16384"}), "too large"},
        WrongCase{"settingAlone", with({"--set", "themeMode"}), "--set"},
        WrongCase{"settingWithoutName", with({"--set", "=dark"}), "--set"},
        WrongCase{"denyOther", with({"--deny", "all"}), "--deny"}),
    [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace orvane::tools
