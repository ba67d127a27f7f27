#include "linux/locale/locale_name.h"

#include <gtest/gtest.h>

#include <array>
#include <utility>

#include "fake_system.h"

namespace orvane::host {
namespace {

TEST(LocaleName, TranslatesPosixNames) {
  constexpr std::array<std::pair<const char*, const char*>, 24> kNames{{
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
      {"c", "en_US"},
      {"posix", "en_US"},
      {"en_US_POSIX", "en_US_POSIX"},
      {"zh_Hant_TW", "zh_Hant_TW"},
      {"zh-Hant-TW", "zh_Hant_TW"},
      {"zh_TW.Big5", "zh_TW"},
      {"pt-BR", "pt_BR"},
      {"sr_Latn_RS", "sr_Latn_RS"},
      {"de_DE@calendar=gregorian", "de_DE@calendar=gregorian"},
      {"en-US-u-hc-h23", "en-US-u-hc-h23"},
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

TEST(LocaleName, IsKnownHoweverItIsSpelled) {
  for (const char* name : {"C", "POSIX", "C.UTF-8", "en_US.utf8", "de_DE.UTF-8", "sr_RS@latin",
                           "zh_Hant_TW", "zh-Hant-TW", "zh_TW.Big5", "ca_ES@valencia", "iw_IL",
                           "de_DE@euro", "en-US-u-hc-h23", "nb_NO", "pt-BR", "DE_de"}) {
    EXPECT_TRUE(knownLocaleName(name)) << name;
  }
  for (const char* name : {"", "xx_YY", "xx_YY.UTF-8", "12_34", "tlh"}) {
    EXPECT_FALSE(knownLocaleName(name)) << name;
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
