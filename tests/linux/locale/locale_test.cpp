#include "linux/locale/locale.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>
#include <vector>

#include "fake_system.h"

namespace orvane::host {
namespace {

constexpr Date kMorning{1795167660};    // 2026-11-20T09:41:00Z, a Friday
constexpr Date kAfternoon{1795188600};  // 15:30 of that day

std::unique_ptr<SystemLocale> localeOf(const std::string& name, const std::string& zone = "UTC") {
  Region region;
  region.locale = name;
  region.timeZone = zone;
  return makeLocale(std::move(region));
}

struct TextsCase {
  const char* locale;
  const char* weekday;
  const char* dateLong;
  const char* dateAndTime;
  const char* afternoon;
  const char* integer;
};

class LocaleTexts : public testing::TestWithParam<TextsCase> {};

TEST_P(LocaleTexts, AreInTheLanguageAndOrderOfTheLocale) {
  const auto& expected = GetParam();
  const auto locale = localeOf(expected.locale);
  EXPECT_EQ(locale->weekdayWide(kMorning), expected.weekday);
  EXPECT_EQ(locale->dateLong(kMorning), expected.dateLong);
  EXPECT_EQ(locale->dateAbbreviatedTimeShortened(kMorning), expected.dateAndTime);
  EXPECT_EQ(locale->timeShortened(kAfternoon), expected.afternoon);
  EXPECT_EQ(locale->integer(1234567), expected.integer);
}

INSTANTIATE_TEST_SUITE_P(
    Table, LocaleTexts,
    testing::Values(
        TextsCase{"en_US", "Friday", "November 20, 2026", "Nov 20, 2026 at 9:41\u202fAM",
                  "3:30\u202fPM", "1,234,567"},
        TextsCase{"en_GB", "Friday", "20 November 2026", "20 Nov 2026 at 09:41", "15:30",
                  "1,234,567"},
        TextsCase{"de_DE", "Freitag", "20. November 2026", "20.11.2026 um 09:41", "15:30",
                  "1.234.567"},
        TextsCase{"fr_FR", "vendredi", "20 novembre 2026", "20 nov. 2026 à 09:41", "15:30",
                  "1\u202f234\u202f567"},
        TextsCase{"ja_JP", "金曜日", "2026年11月20日", "2026/11/20 9:41", "15:30", "1,234,567"},
        TextsCase{"ar_EG", "الجمعة", "٢٠ نوفمبر ٢٠٢٦", "٢٠\u200f/١١\u200f/٢٠٢٦ في ٩:٤١ ص", "٣:٣٠ م",
                  "١٬٢٣٤٬٥٦٧"},
        TextsCase{"he_IL", "יום שישי", "20 בנובמבר 2026", "20 בנוב׳ 2026 בשעה 9:41", "15:30",
                  "1,234,567"},
        TextsCase{"tr_TR", "Cuma", "20 Kasım 2026", "20 Kas 2026 09:41", "15:30", "1.234.567"}),
    [](const auto& test) { return std::string(test.param.locale); });

TEST(LocaleTest, NegativeAndExtremeIntegers) {
  const auto locale = localeOf("en_US");
  EXPECT_EQ(locale->integer(0), "0");
  EXPECT_EQ(locale->integer(999), "999");
  EXPECT_EQ(locale->integer(1234), "1,234");
  EXPECT_EQ(locale->integer(-1234), "-1,234");
  EXPECT_EQ(locale->integer(std::numeric_limits<std::int64_t>::min()),
            "-9,223,372,036,854,775,808");
}

TEST(LocaleTest, ShowsDatesInTheRegionsZone) {
  EXPECT_EQ(localeOf("en_GB", "America/New_York")->timeShortened(kMorning), "04:41");
  EXPECT_EQ(localeOf("en_GB", "Pacific/Kiritimati")->weekdayWide(kAfternoon), "Saturday");
  EXPECT_EQ(localeOf("en_GB", "Asia/Kathmandu")->timeShortened(kMorning), "15:26");
}

TEST(LocaleTest, KeptTextsAreThoseOfTheirMinuteAndDay) {
  const auto locale = localeOf("en_GB", "Asia/Kathmandu");
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(locale->timeShortened(kMorning), "15:26");
    EXPECT_EQ(locale->timeShortened(kMorning + 59.9), "15:26");
    EXPECT_EQ(locale->timeShortened(kMorning + 60), "15:27");
    EXPECT_EQ(locale->timeShortened(kMorning - 0.1), "15:25");
    EXPECT_EQ(locale->weekdayWide(kMorning), "Friday");
    EXPECT_EQ(locale->weekdayWide(kMorning + 8.5 * 3600), "Friday");
    EXPECT_EQ(locale->weekdayWide(kMorning + 8.75 * 3600), "Saturday");
  }
  // More than are kept.
  for (int minute = 0; minute < 1000; ++minute) (void)locale->timeShortened(kMorning + 60 * minute);
  EXPECT_EQ(locale->timeShortened(kMorning), "15:26");
}

TEST(LocaleTest, TheSecondRunOfARepeatedHourReadsLikeTheFirst) {
  const auto locale = localeOf("en_GB", "Europe/Berlin");
  const Date first{1792888200};  // 2026-10-25T00:30:00Z
  EXPECT_EQ(locale->timeShortened(first), "02:30");
  EXPECT_EQ(locale->timeShortened(first + 3600), "02:30");
  EXPECT_EQ(locale->timeShortened(first + 7200), "03:30");
}

TEST(LocaleTest, DatesBeyondAllCalendarsHaveNoText) {
  const auto locale = localeOf("en_US");
  for (const double seconds : {std::nan(""), std::numeric_limits<double>::infinity(), -1e300}) {
    EXPECT_EQ(locale->weekdayWide({seconds}), "");
    EXPECT_EQ(locale->dateAbbreviatedTimeShortened({seconds}), "");
  }
  EXPECT_NE(locale->dateLong({-62135596800.0}), "");  // year 1
}

TEST(LocaleTest, CasesTextsByTheLanguage) {
  EXPECT_EQ(localeOf("en_US")->lowercased("TITLE Iİ"), "title ii̇");
  EXPECT_EQ(localeOf("tr_TR")->lowercased("TITLE Iİ"), "tıtle ıi");
  EXPECT_EQ(localeOf("tr_TR")->uppercased("title ı"), "TİTLE I");
  EXPECT_EQ(localeOf("de_DE")->uppercased("Straße"), "STRASSE");
  EXPECT_EQ(localeOf("en_US")->lowercased(""), "");
  EXPECT_EQ(localeOf("en_US")->lowercased("ΟΔΟΣ"), "οδος");
}

TEST(LocaleTest, EveryIllFormedByteIsOneReplacementCharacter) {
  const auto locale = localeOf("en_US");
  EXPECT_EQ(locale->lowercased("A\xff\xfe"
                               "B"),
            "a\ufffd\ufffdb");
  EXPECT_EQ(locale->lowercased("A\xe2\x82"), "a\ufffd\ufffd");
  EXPECT_EQ(locale->lowercased("\xc0\xaf"), "\ufffd\ufffd");
  EXPECT_EQ(locale->lowercased(std::string_view("A\0B", 3)), std::string("a\0b", 3));
  EXPECT_EQ(locale->localizedCaseInsensitiveCompare("a\xff", "A\xfe"), 0);
}

TEST(LocaleTest, ComparesWithoutRegardToCase) {
  const auto locale = localeOf("en_US");
  EXPECT_LT(locale->localizedCaseInsensitiveCompare("apple", "Banana"), 0);
  EXPECT_GT(locale->localizedCaseInsensitiveCompare("banana", "Apple"), 0);
  EXPECT_EQ(locale->localizedCaseInsensitiveCompare("HOME", "home"), 0);
  EXPECT_LT(locale->localizedCaseInsensitiveCompare("", "a"), 0);
  EXPECT_LT(locale->localizedCaseInsensitiveCompare("resume", "Résumé"), 0);
  EXPECT_LT(locale->localizedCaseInsensitiveCompare("Résumé", "resumes"), 0);
}

TEST(LocaleTest, ComparesByTheOrderOfTheLanguage) {
  EXPECT_LT(localeOf("de_DE")->localizedCaseInsensitiveCompare("Äpfel", "Zebra"), 0);
  EXPECT_GT(localeOf("sv_SE")->localizedCaseInsensitiveCompare("Äpfel", "Zebra"), 0);
}

TEST(LocaleTest, KnowsTheDirectionOfItsScript) {
  for (const char* name : {"ar_EG", "he_IL", "fa_IR", "ur_PK"}) {
    EXPECT_TRUE(localeOf(name)->isRightToLeft()) << name;
  }
  for (const char* name : {"en_US", "de_DE", "ja_JP", "tr_TR"}) {
    EXPECT_FALSE(localeOf(name)->isRightToLeft()) << name;
  }
}

TEST(LocaleTest, FollowsTheSystemWhenTold) {
  FakeSystem system;
  system.environment["LANG"] = "en_GB.UTF-8";
  Region region;
  region.system = system.places();
  region.now = [] { return kMorning; };
  const auto locale = makeLocale(region);
  EXPECT_EQ(locale->weekdayWide(kMorning), "Friday");
  EXPECT_EQ(locale->timeShortened(kMorning), "09:41");
  system.environment["LC_TIME"] = "de_DE.UTF-8";
  system.environment["TZ"] = "Asia/Tokyo";
  system.offset = [](std::int64_t) { return 9 * 3600; };
  EXPECT_EQ(locale->weekdayWide(kMorning), "Friday");
  locale->systemChanged();
  EXPECT_EQ(locale->weekdayWide(kMorning), "Freitag");
  EXPECT_EQ(locale->timeShortened(kMorning), "18:41");
}

TEST(LocaleTest, MayBeAskedFromManyThreads) {
  const auto locale = localeOf("de_DE");
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < 300; ++i) {
        EXPECT_EQ(locale->weekdayWide(kMorning), "Freitag");
        EXPECT_EQ(locale->integer(1234), "1.234");
        EXPECT_EQ(locale->localizedCaseInsensitiveCompare("a", "A"), 0);
        if (i % 100 == 0) locale->systemChanged();
      }
    });
  }
  for (auto& thread : threads) thread.join();
}

}  // namespace
}  // namespace orvane::host
