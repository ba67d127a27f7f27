#include "linux/locale/locale_name.h"

#include <gtest/gtest.h>

#include <array>
#include <utility>

#include "fake_system.h"

namespace orvane::host {
namespace {

TEST(LocaleName, TranslatesPosixNames) {
  constexpr std::array<std::pair<const char*, const char*>, 14> kNames{{
      {"de_DE.UTF-8", "de_DE"},
      {"de_DE", "de_DE"},
      {"de", "de"},
      {"de_DE@euro", "de_DE"},
      {"de_DE.ISO-8859-15@euro", "de_DE"},
      {"sr_RS@latin", "sr_Latn_RS"},
      {"sr_RS.UTF-8@latin", "sr_Latn_RS"},
      {"uz_UZ.UTF-8@cyrillic", "uz_Cyrl_UZ"},
      {"ca_ES.UTF-8@valencia", "ca_ES_VALENCIA"},
      {"C", "en_US"},
      {"C.UTF-8", "en_US"},
      {"POSIX", "en_US"},
      {"", "en_US"},
      {"@latin", "en_US"},
  }};
  for (const auto& [posix, icu] : kNames) EXPECT_EQ(icuLocaleName(posix), icu) << posix;
}

TEST(LocaleName, FollowsTheVariablesInTheirOrder) {
  FakeSystem system;
  EXPECT_EQ(systemLocaleName(system.places()), "en_US");
  system.environment["LANG"] = "fr_FR.UTF-8";
  EXPECT_EQ(systemLocaleName(system.places()), "fr_FR");
  system.environment["LC_TIME"] = "de_DE.UTF-8";
  EXPECT_EQ(systemLocaleName(system.places()), "de_DE");
  system.environment["LC_ALL"] = "";
  EXPECT_EQ(systemLocaleName(system.places()), "de_DE");
  system.environment["LC_ALL"] = "C.UTF-8";
  EXPECT_EQ(systemLocaleName(system.places()), "en_US");
}

TEST(LocaleName, WithoutTextsForTheLanguageItIsEnglish) {
  FakeSystem system;
  for (const char* name : {"tlh_AQ.UTF-8", "xx_YY", "....", "12_34", "a_very_long_name_indeed"}) {
    system.environment["LC_ALL"] = name;
    EXPECT_EQ(systemLocaleName(system.places()), "en_US") << name;
  }
}

TEST(LocaleName, KnowsWhatItCanShow) {
  EXPECT_TRUE(isLocale("en_US"));
  EXPECT_TRUE(isLocale("sr_Latn_RS"));
  EXPECT_TRUE(isLocale("en_DE"));
  EXPECT_FALSE(isLocale(""));
  EXPECT_FALSE(isLocale("xx_YY"));
  EXPECT_TRUE(isTimeZone("Europe/Berlin"));
  EXPECT_TRUE(isTimeZone("UTC"));
  EXPECT_FALSE(isTimeZone("Mars/Olympus"));
  EXPECT_FALSE(isTimeZone(""));
}

}  // namespace
}  // namespace orvane::host
