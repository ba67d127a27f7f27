#include "linux/reader/zone.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

#include "linux/reader/date_values.h"
#include "linux/reader/posix_zone_rule.h"
#include "linux/reader/system_zones.h"
#include "linux/reader/time_reading.h"
#include "linux/reader/windows_zones.h"
#include "linux/reader/zone_definition.h"

namespace orvane::ical {
namespace {

WallTime at(const std::string& text) { return parseDateValue(text)->time; }

std::string instantText(const Zone& zone, const std::string& wall) {
  return utcText(zone.instantOf(at(wall)));
}

TEST(Zone, WithoutChangesIsAlwaysTheSame) {
  const Zone zone(3600);
  EXPECT_EQ(zone.offsetAt(kFirstTime), 3600);
  EXPECT_EQ(zone.offsetAt(kBehindLastTime), 3600);
  EXPECT_EQ(instantText(zone, "20261120T100000"), "20261120T090000Z");
}

TEST(Zone, ATimeInAGapIsMovedOn) {
  const Zone berlin = *systemZone("Europe/Berlin");
  EXPECT_EQ(instantText(berlin, "20260329T015959"), "20260329T005959Z");
  EXPECT_EQ(instantText(berlin, "20260329T020000"), "20260329T010000Z");
  EXPECT_EQ(instantText(berlin, "20260329T023000"), "20260329T013000Z");  // 03:30
  EXPECT_EQ(instantText(berlin, "20260329T030000"), "20260329T010000Z");
}

TEST(Zone, OfATimeThatComesTwiceTheFirstIsMeant) {
  const Zone berlin = *systemZone("Europe/Berlin");
  EXPECT_EQ(instantText(berlin, "20261025T023000"), "20261025T003000Z");
  EXPECT_EQ(instantText(berlin, "20261025T030000"), "20261025T020000Z");
}

TEST(Zone, ADayWithoutMidnightStartsWhenClocksJump) {
  const Zone santiago = *systemZone("America/Santiago");
  EXPECT_EQ(utcText(santiago.startOfDay(dayOf(at("20260906")))), "20260906T040000Z");
  EXPECT_EQ(santiago.wallTime(santiago.startOfDay(dayOf(at("20260906")))), at("20260906T010000"));
}

TEST(Zone, ADayThatNeverWasStartsWithTheNext) {
  const Zone apia = *systemZone("Pacific/Apia");
  const auto skipped = dayOf(at("20111230"));
  EXPECT_EQ(apia.startOfDay(skipped), apia.startOfDay(skipped + 1));
  EXPECT_EQ(apia.startOfDay(skipped) - apia.startOfDay(skipped - 1), kSecondsPerDay);
}

TEST(Zone, EveryInstantComesBack) {
  for (const char* name : {"Europe/Berlin", "America/New_York", "Australia/Lord_Howe",
                           "Africa/Casablanca", "Asia/Kathmandu", "Europe/Dublin"}) {
    const Zone zone = *systemZone(name);
    for (Instant instant = at("20240101"); instant < at("20450101"); instant += 12'345) {
      const WallTime wall = zone.wallTime(instant);
      const Instant back = zone.instantOf(wall);
      // In autumn the first of two instants stands for both.
      ASSERT_TRUE(back == instant || (back < instant && zone.wallTime(back) == wall)) << name;
    }
  }
}

TEST(SystemZones, ReachBeyondTheirTables) {
  const Zone berlin = *systemZone("Europe/Berlin");
  EXPECT_EQ(berlin.offsetAt(at("20260715T120000")), 7200);
  EXPECT_EQ(berlin.offsetAt(at("20400715T120000")), 7200);
  EXPECT_EQ(berlin.offsetAt(at("20991215T120000")), 3600);
  EXPECT_EQ(berlin.offsetAt(at("18800101T120000")), 3208);  // local mean time
  EXPECT_EQ(systemZone("Asia/Tokyo")->offsetAt(at("21000101T120000")), 32400);
  EXPECT_EQ(systemZone("Australia/Sydney")->offsetAt(at("20500115T120000")), 39600);
}

TEST(SystemZones, NamesThatAreNoneAreNothing) {
  for (const std::string name : {"", "Mars/Olympus", "/etc/passwd", "../../etc/passwd", "Europe",
                                 "Europe/../Europe/Berlin", "tzdata.zi", "zone.tab"}) {
    EXPECT_FALSE(systemZone(name)) << name;
  }
}

TEST(SystemZones, BytesThatAreNoZoneAreNothing) {
  EXPECT_FALSE(decodeCompiledZone(""));
  EXPECT_FALSE(decodeCompiledZone("TZif"));
  EXPECT_FALSE(decodeCompiledZone(std::string("TZif2") + std::string(39, '\xff')));
  EXPECT_FALSE(decodeCompiledZone(std::string("TZif2") + std::string(39, '\0')));
}

TEST(PosixZoneRule, KnowsTheFormsOfRules) {
  const auto offsets = [](const char* rule) {
    const auto changes = changesByPosixRule(rule, 2026, 2026);
    std::string text;
    if (!changes) return std::string("nothing");
    for (const auto& change : *changes) {
      text += utcText(change.at) + " " + std::to_string(change.offset) + " ";
    }
    return text;
  };
  EXPECT_EQ(offsets("JST-9"), "20260101T000000Z 32400 ");
  EXPECT_EQ(offsets("<+0545>-5:45"), "20260101T000000Z 20700 ");
  EXPECT_EQ(offsets("CET-1CEST,M3.5.0,M10.5.0/3"), "20260329T010000Z 7200 20261025T010000Z 3600 ");
  EXPECT_EQ(offsets("IST-1GMT0,M10.5.0,M3.5.0/1"), "20261025T010000Z 0 20260329T010000Z 3600 ");
  EXPECT_EQ(offsets("<+1030>-10:30<+11>-11,M10.1.0,M4.1.0"),
            "20261003T153000Z 39600 20260404T150000Z 37800 ");
  EXPECT_EQ(offsets("<-02>2<-01>,M3.5.0/-1,M10.5.0/0"),
            "20260329T010000Z -3600 20261025T010000Z -7200 ");
  EXPECT_EQ(offsets("AAA3BBB,J60/0,300/2"), "20260301T030000Z -7200 20261028T040000Z -10800 ");
  for (const char* bad : {"", "CET", "CET-1CEST", "CET-1CEST,M3.5.0", "CET-1CEST,M13.5.0,M10.5.0",
                          "CET-1CEST,M3.5.0,M10.5.0x", "<+01", "<+01>x"}) {
    EXPECT_EQ(offsets(bad), "nothing") << bad;
  }
}

TEST(WindowsZones, AreKnownToTheSystem) {
  const std::pair<const char*, const char*> zones[] = {
      {"W. Europe Standard Time", "Europe/Berlin"},
      {"Pacific Standard Time", "America/Los_Angeles"},
      {"Eastern Standard Time", "America/New_York"},
      {"GMT Standard Time", "Europe/London"},
      {"Romance Standard Time", "Europe/Paris"},
      {"Tokyo Standard Time", "Asia/Tokyo"},
      {"India Standard Time", "Asia/Calcutta"},
      {"china standard time", "Asia/Shanghai"}};
  for (const auto& [windows, iana] : zones) {
    EXPECT_EQ(ianaNameOfWindowsZone(windows), iana);
    EXPECT_TRUE(systemZone(iana)) << iana;
  }
  EXPECT_EQ(ianaNameOfWindowsZone("Middle Earth Standard Time"), "");
}

TEST(ZoneDefinition, NonsenseSaysNothing) {
  EXPECT_FALSE(readZoneDefinition("", 2060).zone);
  EXPECT_FALSE(readZoneDefinition("BEGIN:VTIMEZONE\nTZID:x\nEND:VTIMEZONE\n", 2060).zone);
  EXPECT_FALSE(
      readZoneDefinition("BEGIN:VTIMEZONE\nTZID:x\nBEGIN:STANDARD\nDTSTART:20260101T000000\n"
                         "TZOFFSETFROM:+99999\nTZOFFSETTO:1\nEND:STANDARD\nEND:VTIMEZONE\n",
                         2060)
          .zone);
}

TEST(ZoneDefinition, AGreedyRuleIsCutShort) {
  const auto definition = readZoneDefinition(
      "BEGIN:VTIMEZONE\nTZID:x\nBEGIN:STANDARD\nDTSTART:19700101T000000\nRRULE:FREQ=SECONDLY\n"
      "TZOFFSETFROM:+0000\nTZOFFSETTO:+0100\nEND:STANDARD\nEND:VTIMEZONE\n",
      2060);
  ASSERT_TRUE(definition.zone);
  EXPECT_EQ(definition.zone->offsetAt(at("20260101T000000")), 3600);
}

TEST(ZoneDefinition, KnowsWhenItsRulesEnd) {
  const auto definition = readZoneDefinition(
      "BEGIN:VTIMEZONE\nTZID:x\nBEGIN:DAYLIGHT\nDTSTART:20200329T020000\n"
      "RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU;UNTIL=20210328T010000Z\nTZOFFSETFROM:+0100\n"
      "TZOFFSETTO:+0200\nEND:DAYLIGHT\nBEGIN:STANDARD\nDTSTART:20201025T030000\n"
      "RDATE:20211031T030000\nTZOFFSETFROM:+0200\nTZOFFSETTO:+0100\nEND:STANDARD\nEND:VTIMEZONE\n",
      2060);
  ASSERT_TRUE(definition.zone);
  EXPECT_EQ(definition.zone->offsetAt(at("20200715T000000")), 7200);
  EXPECT_EQ(definition.zone->offsetAt(at("20210715T000000")), 7200);
  EXPECT_EQ(definition.zone->offsetAt(at("20211215T000000")), 3600);
  EXPECT_EQ(definition.zone->offsetAt(at("20220715T000000")), 3600);
}

}  // namespace
}  // namespace orvane::ical
