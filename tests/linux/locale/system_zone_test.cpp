#include "linux/locale/system_zone.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

#include "fake_system.h"
#include "linux/locale/unicode_text.h"
#include "linux/locale/zone_name.h"

namespace orvane::host {
namespace {

constexpr Date kNow{1795167660};  // 2026-11-20T09:41:00Z

std::int32_t offsetIn(const std::string& zone, std::int64_t instant) {
  std::int32_t raw = 0, dst = 0;
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::TimeZone> named(icu::TimeZone::createTimeZone(fromUtf8(zone)));
  named->getOffset(static_cast<double>(instant) * 1000, false, raw, dst, status);
  return (raw + dst) / 1000;
}

class SystemZoneTest : public testing::Test {
 protected:
  // What the C library finds out by itself.
  void actual(const std::string& zone) {
    system.offset = [zone](std::int64_t instant) { return offsetIn(zone, instant); };
  }
  std::string found() {
    icu::UnicodeString id;
    systemZone(system.places(), kNow)->getID(id);
    return toUtf8(id);
  }
  FakeSystem system;
};

TEST_F(SystemZoneTest, IsNamedByTheVariable) {
  for (const char* value : {"Europe/Berlin", ":Europe/Berlin", "/usr/share/zoneinfo/Europe/Berlin",
                            ":/somewhere/zoneinfo/posix/Europe/Berlin"}) {
    system.environment["TZ"] = value;
    EXPECT_EQ(systemZoneName(system.places()), "Europe/Berlin") << value;
  }
}

TEST_F(SystemZoneTest, TheVariableCountsBeforeTheLink) {
  system.linkLocaltime("/usr/share/zoneinfo/Asia/Tokyo");
  system.environment["TZ"] = "Europe/Berlin";
  EXPECT_EQ(systemZoneName(system.places()), "Europe/Berlin");
  system.environment["TZ"] = "";
  EXPECT_EQ(systemZoneName(system.places()), "Etc/UTC");
}

TEST_F(SystemZoneTest, IsNamedByTheLink) {
  system.linkLocaltime(system.write("share/zoneinfo/Asia/Tokyo", "TZif"));
  EXPECT_EQ(systemZoneName(system.places()), "Asia/Tokyo");
  system.linkLocaltime("share/zoneinfo/Asia/Tokyo");
  EXPECT_EQ(systemZoneName(system.places()), "Asia/Tokyo");
}

TEST_F(SystemZoneTest, IsNamedByALinkBehindAnotherLink) {
  system.linkLocaltime(system.root / "middle");
  const auto file = system.write("share/zoneinfo/right/Asia/Tokyo", "TZif");
  std::filesystem::create_symlink(file, system.root / "middle");
  EXPECT_EQ(systemZoneName(system.places()), "Asia/Tokyo");
}

TEST_F(SystemZoneTest, ACopyIsNamedByItsContent) {
  system.write("localtime", "TZif Tokyo");
  system.write("zoneinfo/Asia/Tokyo", "TZif Tokyo");
  system.write("zoneinfo/Asia/Seoul", "TZif Seoul");
  EXPECT_EQ(systemZoneName(system.places()), "Asia/Tokyo");
}

TEST_F(SystemZoneTest, AmongEqualFilesTheWrittenNameCounts) {
  for (const char* name : {"localtime", "zoneinfo/Europe/Berlin", "zoneinfo/Europe/Oslo"}) {
    system.write(name, "TZif alike");
  }
  system.write("timezone", "Europe/Oslo\n");
  EXPECT_EQ(systemZoneName(system.places()), "Europe/Oslo");
  system.write("zoneinfo/Europe/Oslo", "TZif other");
  EXPECT_EQ(systemZoneName(system.places()), "Europe/Berlin");
}

TEST_F(SystemZoneTest, WithoutAFileItIsUtcAsForTheCLibrary) {
  EXPECT_EQ(systemZoneName(system.places()), "Etc/UTC");
  EXPECT_EQ(found(), "Etc/UTC");
}

TEST_F(SystemZoneTest, AnUnknownNameIsReplacedByAZoneWithTheSameRules) {
  system.linkLocaltime(system.write("share/zoneinfo/America/Newly_Named", "TZif"));
  actual("America/Sao_Paulo");
  EXPECT_EQ(systemZoneName(system.places()), std::nullopt);
  for (std::int64_t day = 0; day < 360; day += 10) {
    const auto instant = static_cast<std::int64_t>(kNow.secondsSince1970) + day * 86400;
    EXPECT_EQ(offsetIn(found(), instant), offsetIn("America/Sao_Paulo", instant));
  }
}

TEST_F(SystemZoneTest, ARuleInsteadOfANameIsReplacedByAZoneWithTheSameRules) {
  system.environment["TZ"] = "CET-1CEST,M3.5.0,M10.5.0/3";
  actual("Europe/Berlin");
  EXPECT_EQ(systemZoneName(system.places()), std::nullopt);
  const auto zone = found();
  for (std::int64_t day = 0; day < 360; day += 10) {
    const auto instant = static_cast<std::int64_t>(kNow.secondsSince1970) + day * 86400;
    EXPECT_EQ(offsetIn(zone, instant), offsetIn("Europe/Berlin", instant));
  }
}

TEST_F(SystemZoneTest, NewerRulesOfTheCLibraryCountMoreThanTheName) {
  system.environment["TZ"] = "Asia/Almaty";
  system.offset = [](std::int64_t) { return 5 * 3600; };
  EXPECT_EQ(found(), "Asia/Almaty");
  const auto zone = systemZone(system.places(), kNow);
  std::int32_t raw = 0, dst = 0;
  UErrorCode status = U_ZERO_ERROR;
  zone->getOffset(kNow.secondsSince1970 * 1000, false, raw, dst, status);
  EXPECT_EQ(raw + dst, 5 * 3600 * 1000);
  EXPECT_FALSE(isFixed(*zone));
}

// Rules that no zone ever had, with a gap at midnight and a time that comes twice.
TEST_F(SystemZoneTest, ANamedZoneFollowsItsFileWhereIcuIsBehind) {
  constexpr std::int64_t kSpring = 1'806'534'000, kAutumn = 1'825'278'600;  // 2027
  system.zoneFiles["Europe/Berlin"] = [](std::int64_t instant) {
    return instant >= kSpring && instant < kAutumn ? 5400 : 3600;
  };
  Region region;
  region.system = system.places();
  region.now = [] { return kNow; };
  region.timeZone = "Europe/Berlin";
  const auto calendar = makeCalendar(region);
  EXPECT_EQ(calendar->timeZoneName(), "Europe/Berlin");
  EXPECT_EQ(calendar->startOfDay({kSpring - 1.0}), Date{kSpring - 86'400.0});
  EXPECT_EQ(calendar->startOfDay({kSpring + 7200.0}), Date{static_cast<double>(kSpring)});
  EXPECT_EQ(calendar->startOfNextDay({kSpring + 7200.0}), Date{kSpring + 86'400.0 - 1800});
  // The same for an item that names the zone.
  region.timeZone = "UTC";
  DateComponents due;
  due.calendar = "gregorian";
  due.timeZone = "Europe/Berlin";
  std::tie(due.year, due.month, due.day, due.hour) = std::tuple(2027, 7, 1, 12);
  EXPECT_EQ(makeCalendar(region)->date(due), Date{1'814'436'000.0 + 1800});
}

TEST_F(SystemZoneTest, RulesLikeNoneKeepThePresentOffsetAndSaySoOnce) {
  system.environment["TZ"] = "XYZ-1:23";
  system.offset = [](std::int64_t) { return 4980; };
  const auto zone = systemZone(system.places(), kNow);
  EXPECT_TRUE(isFixed(*zone));
  EXPECT_EQ(zone->getRawOffset(), 4980 * 1000);
  Region region;
  region.system = system.places();
  region.now = [] { return kNow; };
  testing::internal::CaptureStderr();
  const auto calendar = makeCalendar(region);
  calendar->systemChanged();
  const auto said = testing::internal::GetCapturedStderr();
  EXPECT_EQ(std::ranges::count(said, '\n'), 1) << said;
  EXPECT_EQ(calendar->startOfDay(kNow), Date{1795132800 - 4980});
  EXPECT_EQ(calendar->timeZoneName(), "GMT+01:23");
}

TEST_F(SystemZoneTest, GreenwichIsAZoneWithAName) {
  for (const char* name : {"GMT", "GMT0", "GMT+0", "Etc/GMT"}) {
    system.environment["TZ"] = name;
    EXPECT_FALSE(isFixed(*systemZone(system.places(), kNow))) << name;
  }
}

TEST_F(SystemZoneTest, TheCalendarFollowsAChangeWhenTold) {
  system.environment["TZ"] = "Europe/Berlin";
  actual("Europe/Berlin");
  Region region;
  region.system = system.places();
  region.now = [] { return kNow; };
  const auto calendar = makeCalendar(region);
  const Date berlin = calendar->startOfDay(kNow);
  EXPECT_TRUE(calendar->isDateInToday(berlin));
  system.environment["TZ"] = "America/New_York";
  actual("America/New_York");
  EXPECT_EQ(calendar->startOfDay(kNow), berlin);
  calendar->systemChanged();
  EXPECT_EQ(calendar->startOfDay(kNow), berlin + 6 * 3600);
  EXPECT_EQ(calendar->timeZoneName(), "America/New_York");
  EXPECT_FALSE(calendar->isDateInToday(berlin));
}

TEST_F(SystemZoneTest, AZoneThatOnlyTheSystemKnowsIsAsItsFileSays) {
  system.zoneFiles["America/Newly_Named"] = [](std::int64_t) { return -3 * 3600; };
  const auto zone = namedZone("America/Newly_Named", system.places(), kNow);
  ASSERT_TRUE(zone);
  EXPECT_EQ(zone->getRawOffset(), -3 * 3600 * 1000);
  EXPECT_FALSE(namedZone("America/Never_Named", system.places(), kNow));
}

TEST(RealSystem, OnlyZonesHaveFilesOfZones) {
  const SystemPlaces places;
  for (const char* name : {"Nowhere/Land", "XYZ-3", "", "zone.tab", "Europe", "../zoneinfo/UTC",
                           "/usr/share/zoneinfo/UTC"}) {
    EXPECT_FALSE(places.offsetOf(name)) << name;
  }
}

// Whatever versions of the two are installed here.
TEST(RealSystem, NamedZonesAgreeWithTheirFiles) {
  const SystemPlaces places;
  for (const std::string name : {"America/Mexico_City", "Africa/Cairo", "Asia/Almaty",
                                 "America/Nuuk", "America/Asuncion", "Europe/Berlin", "UTC"}) {
    const auto offset = places.offsetOf(name);
    ASSERT_TRUE(offset) << name;
    const auto zone = namedZone(name, places, kNow);
    for (std::int64_t day = 0; day < 400; day += 7) {
      const auto instant = static_cast<std::int64_t>(kNow.secondsSince1970) + day * 86'400;
      std::int32_t raw = 0, dst = 0;
      UErrorCode status = U_ZERO_ERROR;
      zone->getOffset(static_cast<double>(instant) * 1000, false, raw, dst, status);
      EXPECT_EQ((raw + dst) / 1000, offset(instant)) << name << " on day " << day;
    }
  }
}

TEST(RealSystem, HasAZoneThatAgreesWithTheCLibrary) {
  const SystemPlaces places;
  const auto zone = systemZone(places, kNow);
  std::int32_t raw = 0, dst = 0;
  UErrorCode status = U_ZERO_ERROR;
  zone->getOffset(kNow.secondsSince1970 * 1000, false, raw, dst, status);
  EXPECT_EQ((raw + dst) / 1000, places.offset(static_cast<std::int64_t>(kNow.secondsSince1970)));
}

}  // namespace
}  // namespace orvane::host
